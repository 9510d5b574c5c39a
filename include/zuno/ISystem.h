#pragma once

#include <zuno/IBase.h>
#include <zuno/IURI.h>
#include <zuno/P.h>
#include <zuno/String.h>

namespace zuno {

// The process-wide system service.
class ISystem : public virtual IBase {
public:
    // The operating system's human-readable name ("Microsoft Windows 10 ... (build 19045), 64-bit").
    virtual String getOSName() = 0;
    // Permanently removes the file a URI names; false at once for a null or empty URI, and
    // for a file that is already gone. Failures of the file system raise CError.
    virtual bool deleteFile(const P<IURI>& uri) = 0;
    // Moves the file to the recycle bin (the freedesktop Trash on POSIX).
    virtual bool recycleFile(const P<IURI>& uri) = 0;
};

// The process-wide system service.
P<ISystem> getSystem();

} // namespace zuno
