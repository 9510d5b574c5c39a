#pragma once

#include <zuno/IBase.h>
#include <zuno/String.h>

#include <cstdint>

namespace zuno {

// An immutable parsed resource identifier. Components are kept as they stand in the text,
// escapes included, unless a getter says otherwise.
class IURI : public virtual IBase {
public:
    virtual String getScheme() const = 0;
    // Compares the scheme ignoring letter case.
    virtual bool isScheme(const String& scheme) const = 0;
    virtual String getSchemeSpecificPart() const = 0;
    virtual String getAuthority() const = 0;
    virtual String getUserInfo() const = 0;     // escapes decoded
    virtual String getRawUserInfo() const = 0;  // as in the text
    virtual String getHost() const = 0;
    virtual String getPortText() const = 0;
    // -1 when the URI has no port.
    virtual int32_t getPort() const = 0;
    virtual String getPath() const = 0;
    // The path with its %XX escapes decoded.
    virtual String getDecodedPath() const = 0;
    virtual String getQuery() const = 0;
    virtual String getFragment() const = 0;
    // True when the URI has no scheme.
    virtual bool isRelative() const = 0;
    // True for a scheme followed by something other than "/" ("mailto:someone").
    virtual bool isOpaque() const = 0;
    // Whether the path ends with `extension` (".xml"), ignoring letter case.
    virtual bool hasExtension(const String& extension) const = 0;
    // The last segment of the path, decoded.
    virtual String getFileName() const = 0;
    // The text form.
    virtual String toString() const = 0;
};

} // namespace zuno
