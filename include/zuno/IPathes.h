#pragma once

#include <zuno/IBase.h>
#include <zuno/IURI.h>
#include <zuno/P.h>
#include <zuno/String.h>

namespace zuno {

// Local paths and their file URIs. On Windows drive-letter paths (C:\dir\file) become
// file:///C:/dir/file and UNC paths (\\host\share\file) file://host/share/file; on POSIX
// /dir/file becomes file:///dir/file. Path text is escaped with CURI's query-and-fragment
// set.
class IPathes : public virtual IBase {
public:
    // A relative path is made absolute against the current directory first.
    virtual P<IURI> pathToURI(const String& path) = 0;
    // The full local path of a file URI; with `asFolder` the path ends in a separator.
    // Raises CURITypeNotSupportedError for a URI that is not a local file URI.
    virtual String uriToPath(const P<IURI>& uri, bool asFolder) = 0;
};

// The process-wide path service.
P<IPathes> getPathes();

} // namespace zuno
