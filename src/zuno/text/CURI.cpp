#include <zuno/CURI.h>
#include <zuno/CURIError.h>
#include <zuno/ICharEncoding.h>

#include <algorithm>
#include <string>
#include <vector>

namespace zuno {

const wchar_t* const CURI::UserInfoAllowed = L";:,&=+$";
const wchar_t* const CURI::PathAllowed = L";:,/@&=+$";
const wchar_t* const CURI::QueryFragmentAllowed = L";:,/?@&=+$";

namespace {

const wchar_t* const Delimiters = L"\"#$%&+,/:;<=>?@[\\]^`{|}";
const int32_t MaxPort = 65535;

bool isListed(char32_t c, const wchar_t* set) {
    for (; set && *set; ++set) {
        if (char32_t(*set) == c) return true;
    }
    return false;
}

bool needsEscape(char32_t c, const wchar_t* allowed) {
    if (isListed(c, allowed)) return false;
    return c <= 0x20 || c == 0x7F || isListed(c, Delimiters);
}

int hexValue(char32_t c) {
    if (c >= U'0' && c <= U'9') return int(c - U'0');
    if (c >= U'A' && c <= U'F') return int(c - U'A') + 10;
    if (c >= U'a' && c <= U'f') return int(c - U'a') + 10;
    return -1;
}

// The byte of a "%XX" escape at `pos`, or -1 when there is none there. "%00" does not
// count: a NUL must not get into decoded text.
int escapedByte(const std::u32string& chars, size_t pos) {
    if (pos + 2 >= chars.size() || chars[pos] != U'%') return -1;
    const int high = hexValue(chars[pos + 1]);
    const int low = hexValue(chars[pos + 2]);
    if (high < 0 || low < 0 || (high == 0 && low == 0)) return -1;
    return high * 16 + low;
}

bool isSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

// The characters of a run of escaped bytes: UTF-8 when the run is valid UTF-8 (decoding
// and encoding it again gives the same bytes, and no surrogate comes out), otherwise one
// character per byte.
void appendDecodedBytes(const std::string& bytes, std::u32string& out) {
    const ICharEncoding& utf8 = getCharEncoding(Encoding::UTF8);
    std::u32string decoded;
    utf8.decode(bytes.data(), int32_t(bytes.size()), decoded);
    std::string again;
    utf8.encode(decoded.data(), decoded.size(), again);
    if (again == bytes && std::none_of(decoded.begin(), decoded.end(), isSurrogate)) {
        out += decoded;
    } else {
        for (unsigned char byte : bytes) out += char32_t(byte);
    }
}

// A relative path whose first segment holds a ":" would read as a scheme.
bool firstSegmentHasColon(const String& path) {
    const int32_t colon = path.find(U':');
    const int32_t slash = path.find(U'/');
    return colon >= 0 && (slash < 0 || colon < slash);
}

int32_t parsePort(const String& portText, const String& uriText) {
    if (portText.isEmpty()) return -1;
    int32_t port = 0;
    for (char32_t c : portText.getChars()) {
        if (c < U'0' || c > U'9') throw CURIFormatError(uriText);
        port = port * 10 + int32_t(c - U'0');
        if (port > MaxPort) throw CURIFormatError(uriText);
    }
    return port;
}

String joinSegments(const std::vector<String>& segments, bool absolute) {
    String result = absolute ? String(L"/") : String::empty();
    for (size_t i = 0; i < segments.size(); ++i) {
        if (i > 0) result += L"/";
        result += segments[i];
    }
    return result;
}

// Removes "." and ".." segments. A path that ends in one of them keeps its trailing "/"
// ("a/b/.." is "a/"); ".." above the root is dropped, leading ".." of a relative path stay.
String normalizePath(const String& path) {
    const bool absolute = path.startsWith(L"/");
    std::vector<String> pieces = path.split(L"/");
    if (absolute) pieces.erase(pieces.begin());
    std::vector<String> kept;
    for (size_t i = 0; i < pieces.size(); ++i) {
        const String& piece = pieces[i];
        const bool last = i + 1 == pieces.size();
        if (piece == L"..") {
            if (!kept.empty() && kept.back() != L"..") {
                kept.pop_back();
            } else if (!absolute) {
                kept.push_back(piece);
                continue;
            }
        } else if (piece != L".") {
            kept.push_back(piece);
            continue;
        }
        if (last) kept.push_back(String::empty());
    }
    return joinSegments(kept, absolute);
}

} // namespace

CURI::CURI(const String& text) {
    parse(text.isNull() ? String::empty() : text);
}

CURI::CURI(const String& scheme, const String& userInfo, const String& host, const String& portText,
           const String& path, const String& query, const String& fragment) {
    const bool bareIPv6 = host.find(U':') >= 0 && !host.startsWith(L"[");
    const String hostText = bareIPv6 ? L"[" + host + L"]" : host;
    const String escapedPath = escape(path, PathAllowed);
    const bool hasAuthority = !hostText.isEmpty() || !userInfo.isEmpty() || !portText.isEmpty() ||
                              (!scheme.isEmpty() && escapedPath.startsWith(L"/")) || escapedPath.startsWith(L"//");

    String text = scheme.isEmpty() ? String::empty() : scheme + L":";
    if (hasAuthority) {
        text += L"//";
        if (!userInfo.isEmpty()) text += escape(userInfo, UserInfoAllowed) + L"@";
        text += hostText;
        if (!portText.isEmpty()) text += L":" + portText;
        if (!escapedPath.isEmpty() && !escapedPath.startsWith(L"/")) text += L"/";
    } else if (scheme.isEmpty() && firstSegmentHasColon(escapedPath)) {
        text += L"./";
    }
    text += escapedPath;
    if (!query.isEmpty()) text += L"?" + escape(query, QueryFragmentAllowed);
    if (!fragment.isEmpty()) text += L"#" + escape(fragment, QueryFragmentAllowed);
    parse(text);
}

CURI::CURI(const CURI& other) = default;

void CURI::parse(const String& text) {
    m_parsed = true;
    const int32_t delimiter = text.findAnyOf(L":/?#");
    if (delimiter > 0 && text.charAt(delimiter) == U':') {
        m_scheme = text.substring(0, delimiter);
        m_schemeSpecificPart = text.substring(delimiter + 1);
        m_relative = false;
    } else {
        m_schemeSpecificPart = text;
    }
    if (!m_relative && !m_schemeSpecificPart.startsWith(L"/")) {
        // Opaque ("mailto:someone", "winresicon:shell32.dll,-1"): nothing more to split.
        m_opaque = true;
        m_path = m_schemeSpecificPart;
    } else {
        parseHierarchical(text);
    }
    m_text = composeText();
}

void CURI::parseHierarchical(const String& text) {
    const String& rest = m_schemeSpecificPart;
    const int32_t length = rest.length();
    int32_t pathStart = 0;
    if (rest.startsWith(L"//")) {
        pathStart = rest.findAnyOf(L"/?#", 2);
        if (pathStart < 0) pathStart = length;
        m_authority = rest.substring(2, pathStart);
        m_hasAuthority = true;
        parseAuthority(text);
    }
    int32_t pathEnd = rest.findAnyOf(L"?#", pathStart);
    if (pathEnd < 0) pathEnd = length;
    const int32_t fragmentStart = rest.find(U'#', pathStart);
    m_path = rest.substring(pathStart, pathEnd);
    if (pathEnd < length && rest.charAt(pathEnd) == U'?') {
        m_query = rest.substring(pathEnd + 1, fragmentStart < 0 ? length : fragmentStart);
        m_hasQuery = true;
    }
    if (fragmentStart >= 0) {
        m_fragment = rest.substring(fragmentStart + 1);
        m_hasFragment = true;
    }
    if (!m_path.isEmpty()) m_path = normalizePath(m_path);
}

void CURI::parseAuthority(const String& text) {
    String hostAndPort = m_authority;
    const int32_t at = m_authority.rfind(U'@');
    if (at >= 0) {
        m_rawUserInfo = m_authority.substring(0, at);
        m_userInfo = unescape(m_rawUserInfo);
        hostAndPort = m_authority.substring(at + 1);
    }
    // The port follows the last ":" outside the brackets of an IPv6 host.
    int32_t portColon = -1;
    bool inBrackets = false;
    const std::u32string chars = hostAndPort.getChars();
    for (size_t i = 0; i < chars.size(); ++i) {
        if (chars[i] == U'[') inBrackets = true;
        else if (chars[i] == U']') inBrackets = false;
        else if (chars[i] == U':' && !inBrackets) portColon = int32_t(i);
    }
    if (inBrackets) throw CURIFormatError(text);
    if (portColon < 0) {
        m_host = hostAndPort;
    } else {
        m_host = hostAndPort.substring(0, portColon);
        m_portText = hostAndPort.substring(portColon + 1);
    }
    m_port = parsePort(m_portText, text);
}

String CURI::composeText() const {
    String text = m_relative ? String::empty() : m_scheme + L":";
    if (m_opaque) return text + m_path;
    // A path that begins with "//" needs an authority, even an empty one, in front of it.
    if (m_hasAuthority || m_path.startsWith(L"//")) {
        text += L"//" + m_authority;
    } else if (m_relative && firstSegmentHasColon(m_path)) {
        text += L"./";
    }
    text += m_path;
    if (m_hasQuery) text += L"?" + m_query;
    if (m_hasFragment) text += L"#" + m_fragment;
    return text;
}

String CURI::escape(const String& part, const wchar_t* allowed) {
    static const char hexDigits[] = "0123456789ABCDEF";
    const std::u32string chars = part.getChars();
    std::u32string escaped;
    escaped.reserve(chars.size());
    for (char32_t c : chars) {
        if (needsEscape(c, allowed)) {
            escaped += U'%';
            escaped += char32_t(hexDigits[(c >> 4) & 0xF]);
            escaped += char32_t(hexDigits[c & 0xF]);
        } else {
            escaped += c;
        }
    }
    return escaped.size() == chars.size() ? part : String::fromChars(escaped);
}

String CURI::unescape(const String& text) {
    const std::u32string chars = text.getChars();
    std::u32string decoded;
    decoded.reserve(chars.size());
    std::string run;
    for (size_t i = 0; i < chars.size();) {
        const int byte = escapedByte(chars, i);
        if (byte >= 0) {
            run += char(byte);
            i += 3;
            continue;
        }
        if (!run.empty()) {
            appendDecodedBytes(run, decoded);
            run.clear();
        }
        decoded += chars[i++];
    }
    if (!run.empty()) appendDecodedBytes(run, decoded);
    return decoded == chars ? text : String::fromChars(decoded);
}

String CURI::getScheme() const { return m_scheme; }
bool CURI::isScheme(const String& scheme) const { return m_scheme.equalsNoCase(scheme); }
String CURI::getSchemeSpecificPart() const { return m_schemeSpecificPart; }
String CURI::getAuthority() const { return m_authority; }
String CURI::getUserInfo() const { return m_userInfo; }
String CURI::getRawUserInfo() const { return m_rawUserInfo; }
String CURI::getHost() const { return m_host; }
String CURI::getPortText() const { return m_portText; }
int32_t CURI::getPort() const { return m_port; }
String CURI::getPath() const { return m_path; }
String CURI::getDecodedPath() const { return unescape(m_path); }
String CURI::getQuery() const { return m_query; }
String CURI::getFragment() const { return m_fragment; }
bool CURI::isRelative() const { return m_relative; }
bool CURI::isOpaque() const { return m_opaque; }
String CURI::toString() const { return m_text; }

bool CURI::hasExtension(const String& extension) const {
    return getDecodedPath().endsWithNoCase(extension);
}

String CURI::getFileName() const {
    // Split before decoding: an escaped "/" ("%2F") belongs to the name.
    return unescape(m_path.substring(m_path.rfind(U'/') + 1));
}

} // namespace zuno
