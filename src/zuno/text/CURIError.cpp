#include <zuno/CURIError.h>
#include <zuno/IStringLocalizer.h>

namespace zuno {

namespace {

String textOf(const P<IURI>& uri) {
    return uri ? uri->toString() : String::empty();
}

// How a file is named in messages: the decoded path of a file URI ("/C:/dir" shown as
// "C:/dir"), the text form of any other URI.
String fileText(const P<IURI>& uri) {
    if (!uri->isScheme(L"file")) return uri->toString();
    const String path = uri->getDecodedPath();
    const bool driveAfterSlash = path.length() >= 3 && path.charAt(0) == U'/' && path.charAt(2) == U':';
    return driveAfterSlash ? path.substring(1) : path;
}

} // namespace

CURIError::CURIError(const String& message, const P<IURI>& uri, const String& name) : CError(message, name) {
    // An empty message keeps "Unspecified error" and no URI: subclasses that compose their
    // own text pass an empty one and set it afterwards.
    if (message.isEmpty()) return;
    if (uri) {
        setMessage(message.replace(L"%URI%", uri->toString()));
        m_uri = uri;
    } else {
        setMessage(message.replace(L"%URI%", L"<uri unknown>"));
    }
}

CURIFormatError::CURIFormatError(const String& uriText) : CURIError(String(), nullptr, L"URIFormatError") {
    setMessage(uriText.isEmpty() ? String(L"The URI has an invalid format.")
                                 : L"The URI ('" + uriText + L"') has an invalid format.");
}

CURITypeNotSupportedError::CURITypeNotSupportedError(const String& uriText)
    : CURIError(String(), nullptr, L"URITypeNotSupportedError") {
    setMessage(uriText.isEmpty() ? String(L"This type URI is not supported.")
                                 : L"This type of URI ('" + uriText + L"') is not supported.");
}

CURITypeNotSupportedError::CURITypeNotSupportedError(const P<IURI>& uri)
    : CURITypeNotSupportedError(textOf(uri)) {
    setURI(uri);
}

CFileNotFoundError::CFileNotFoundError(const P<IURI>& uri) : CFileError(String(), nullptr, L"FileNotFoundError") {
    if (uri) {
        setMessage(fillPlaceholder(localizeText("zuno.CFileNotFoundError.Desc", L"The file '%FILE%' was not found."),
                                   "FILE", fileText(uri)));
        setURI(uri);
    } else {
        setMessage(localizeText("zuno.CFileNotFoundError.GeneralDesc", L"The file could not be found."));
    }
}

CFileAccessDeniedError::CFileAccessDeniedError(const P<IURI>& uri)
    : CFileError(String(), nullptr, L"FileAccessDeniedError") {
    const String file = uri ? fileText(uri) : String(L"<uri unknown>");
    setMessage(fillPlaceholder(
        localizeText("zuno.CFileAccessDeniedError.Desc", L"Access to the file '%FILE%' was denied."), "FILE", file));
    setURI(uri);
}

CStreamClosedError::CStreamClosedError(const P<IURI>& uri) : CStreamError(L"The stream has been closed.", uri) {}

CEndOfStreamError::CEndOfStreamError(const P<IURI>& uri)
    : CStreamError(uri ? L"Unexpected end of data stream (uri: '%URI%')." : L"Unexpected end of data stream.", uri) {}

} // namespace zuno
