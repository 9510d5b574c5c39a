#pragma once

#include <zuno/CError.h>
#include <zuno/IURI.h>

namespace zuno {

// An error about a resource. Every "%URI%" in the message becomes the URI's text, or
// "<uri unknown>" without one. An empty message stays "Unspecified error" and keeps no URI.
class CURIError : public CError {
public:
    CURIError(const String& message, const P<IURI>& uri, const String& name = L"URIError");
    P<IURI> getURI() const { return m_uri; }

protected:
    void setURI(const P<IURI>& uri) { m_uri = uri; }

private:
    P<IURI> m_uri;
};

// "The URI ('text') has an invalid format."
class CURIFormatError : public CURIError {
public:
    explicit CURIFormatError(const String& uriText = String());
};

// "This type of URI ('text') is not supported."
class CURITypeNotSupportedError : public CURIError {
public:
    explicit CURITypeNotSupportedError(const String& uriText = String());
    explicit CURITypeNotSupportedError(const P<IURI>& uri);
};

class CFileError : public CURIError {
public:
    CFileError(const String& message, const P<IURI>& uri, const String& name = L"FileError")
        : CURIError(message, uri, name) {}
};

// "The file '%FILE%' was not found." (localized), or "The file could not be found.". %FILE%
// is the decoded path of a file URI (without the "/" before a drive letter), the text of
// any other URI. The URI is kept.
class CFileNotFoundError : public CFileError {
public:
    explicit CFileNotFoundError(const P<IURI>& uri = nullptr);
};

// "Access to the file '%FILE%' was denied." (localized), %FILE% as above, "<uri unknown>"
// without a URI. The URI is kept.
class CFileAccessDeniedError : public CFileError {
public:
    explicit CFileAccessDeniedError(const P<IURI>& uri);
};

class CStreamError : public CURIError {
public:
    CStreamError(const String& message, const P<IURI>& uri = nullptr, const String& name = L"StreamError")
        : CURIError(message, uri, name) {}
};

// "The stream has been closed."
class CStreamClosedError : public CStreamError {
public:
    explicit CStreamClosedError(const P<IURI>& uri = nullptr);
};

// "Unexpected end of data stream (uri: 'text')." or, without a URI, "Unexpected end of data stream."
class CEndOfStreamError : public CStreamError {
public:
    explicit CEndOfStreamError(const P<IURI>& uri = nullptr);
};

} // namespace zuno
