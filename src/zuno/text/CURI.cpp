#include <zuno/CURI.h>
#include <zuno/CURIError.h>
#include <zuno/CWideTextBuffer.h>

#include "text/percentEncoding.h"
#include "text/unicode.h"
#include "text/utf8Decode.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace zuno {

const wchar_t* const CURI::UserInfoAllowed = L";:,&=+$";
const wchar_t* const CURI::PathAllowed = L";:,/@&=+$";
const wchar_t* const CURI::QueryFragmentAllowed = L";:,/?@&=+$";

namespace {

using View = std::wstring_view;

const int32_t MaxPort = 65535;

// The wide characters of `text` (a wide String, which stays alive while the view is used).
View viewOf(const String& wide) {
    return View(wide.wc_str(), size_t(wide->getByteLength()) / sizeof(wchar_t));
}

String makeString(View text) {
    return String(text.data(), int32_t(text.size()));
}

// A set of ASCII characters, tested without a search per character.
class AsciiSet {
public:
    constexpr explicit AsciiSet(const wchar_t* chars) {
        for (; *chars; ++chars) m_bits[*chars >> 6] |= uint64_t(1) << (*chars & 63);
    }
    bool contains(wchar_t c) const { return unsigned(c) < 128 && (m_bits[unsigned(c) >> 6] >> (unsigned(c) & 63)) & 1; }

    // The position of the first character of the set in `text` from `from` on; npos if none.
    size_t findIn(View text, size_t from = 0) const {
        for (size_t i = from; i < text.size(); ++i) {
            if (contains(text[i])) return i;
        }
        return View::npos;
    }

private:
    uint64_t m_bits[2] = {};
};

constexpr AsciiSet SchemeEnd(L":/?#");
constexpr AsciiSet AuthorityEnd(L"/?#");
constexpr AsciiSet Delimiters(L"\"#$%&+,/:;<=>?@[\\]^`{|}");

// Characters above 0x7F (the units of a surrogate pair among them) are never escaped.
bool needsEscape(wchar_t c, const AsciiSet& allowed) {
    if (allowed.contains(c)) return false;
    return c <= 0x20 || c == 0x7F || Delimiters.contains(c);
}

void append(CWideTextBuffer& out, View text) {
    out.append(text.data(), text.size());
}

void append(CWideTextBuffer& out, const String& text) {
    if (!text.isNull()) append(out, viewOf(text.toWide()));
}

// The byte of a "%XX" escape at `p`, or -1 when there is none there. "%00" does not
// count: a NUL must not get into decoded text.
int escapedByte(const wchar_t* p, const wchar_t* end) {
    const int byte = percentEscapeAt(p, end);
    return byte == 0 ? -1 : byte;
}

// The characters of a run of escaped bytes: UTF-8 when the run is well-formed UTF-8 (no
// surrogates, no overlong forms), otherwise one character per byte.
void appendDecodedBytes(const std::string& bytes, CWideTextBuffer& out) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto* end = p + bytes.size();
    if (!isWellFormedUTF8(p, end)) {
        out.appendBytes(bytes.data(), bytes.size());
        return;
    }
    wchar_t* room = out.extend(bytes.size());
    size_t chars = 0;
    out.shrink(size_t(room + bytes.size() - decodeUTF8ToWide(p, end, room, chars)));
}

// A relative path whose first segment holds a ":" would read as a scheme.
bool firstSegmentHasColon(View path) {
    const size_t colon = path.find(L':');
    return colon != View::npos && colon < path.find(L'/');
}

int32_t parsePort(View portText, const String& uriText) {
    if (portText.empty()) return -1;
    int32_t port = 0;
    for (wchar_t c : portText) {
        if (c < L'0' || c > L'9') throw CURIFormatError(uriText);
        port = port * 10 + int32_t(c - L'0');
        if (port > MaxPort) throw CURIFormatError(uriText);
    }
    return port;
}

// Whether a "." or ".." segment may be in the path: one of its segments begins with ".".
bool mayHaveDotSegments(View path) {
    return !path.empty() && (path[0] == L'.' || path.find(L"/.") != View::npos);
}

// Removes "." and ".." segments. A path that ends in one of them keeps its trailing "/"
// ("a/b/.." is "a/"); ".." above the root is dropped, leading ".." of a relative path stay.
String normalizePath(View path) {
    if (!mayHaveDotSegments(path)) return makeString(path);
    const bool absolute = !path.empty() && path[0] == L'/';
    if (absolute) path.remove_prefix(1);
    std::vector<View> kept;
    for (bool last = false; !last;) {
        const size_t slash = path.find(L'/');
        last = slash == View::npos;
        const View piece = path.substr(0, slash);
        if (!last) path.remove_prefix(slash + 1);
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
        if (last) kept.push_back(View());
    }
    CWideTextBuffer joined;
    if (absolute) joined.append(L'/');
    for (size_t i = 0; i < kept.size(); ++i) {
        if (i > 0) joined.append(L'/');
        append(joined, kept[i]);
    }
    return joined.detachString();
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

    CWideTextBuffer text;
    append(text, scheme);
    if (!scheme.isEmpty()) text.append(L':');
    if (hasAuthority) {
        append(text, View(L"//"));
        if (!userInfo.isEmpty()) {
            append(text, escape(userInfo, UserInfoAllowed));
            text.append(L'@');
        }
        append(text, hostText);
        if (!portText.isEmpty()) {
            text.append(L':');
            append(text, portText);
        }
        if (!escapedPath.isEmpty() && !escapedPath.startsWith(L"/")) text.append(L'/');
    } else if (scheme.isEmpty() && firstSegmentHasColon(viewOf(escapedPath.toWide()))) {
        append(text, View(L"./"));
    }
    append(text, escapedPath);
    if (!query.isEmpty()) {
        text.append(L'?');
        append(text, escape(query, QueryFragmentAllowed));
    }
    if (!fragment.isEmpty()) {
        text.append(L'#');
        append(text, escape(fragment, QueryFragmentAllowed));
    }
    parse(text.detachString());
}

CURI::CURI(const CURI& other) = default;

// Works on the wide characters of the text in one piece; every delimiter is ASCII, so no
// surrogate pair is ever split.
void CURI::parse(const String& text) {
    m_parsed = true;
    const String wide = text.toWide();
    const View all = viewOf(wide);
    View rest = all;
    const size_t delimiter = SchemeEnd.findIn(all);
    if (delimiter != View::npos && delimiter > 0 && all[delimiter] == L':') {
        m_scheme = makeString(all.substr(0, delimiter));
        rest = all.substr(delimiter + 1);
        m_schemeSpecificPart = makeString(rest);
        m_relative = false;
    } else {
        m_schemeSpecificPart = wide;
    }
    View parsedPath = rest;
    if (!m_relative && (rest.empty() || rest[0] != L'/')) {
        // Opaque ("mailto:someone", "winresicon:shell32.dll,-1"): nothing more to split.
        m_opaque = true;
        m_path = m_schemeSpecificPart;
    } else {
        parsedPath = parseHierarchical(rest, text);
    }
    // Mostly the text form is the text itself; it is composed only where parsing changed it.
    const bool pathChanged = mayHaveDotSegments(parsedPath) && viewOf(m_path.toWide()) != parsedPath;
    const bool composedDiffers = !m_opaque && (pathChanged ||
                                               (m_relative && !m_hasAuthority && firstSegmentHasColon(parsedPath)));
    m_text = composedDiffers ? composeText() : wide;
}

// Returns the path as it stands in the text, before its normalisation.
View CURI::parseHierarchical(View rest, const String& text) {
    const size_t length = rest.size();
    size_t pathStart = 0;
    if (rest.substr(0, 2) == L"//") {
        pathStart = std::min(AuthorityEnd.findIn(rest, 2), length);
        const View authority = rest.substr(2, pathStart - 2);
        m_authority = makeString(authority);
        m_hasAuthority = true;
        parseAuthority(authority, text);
    }
    const size_t fragmentStart = rest.find(L'#', pathStart);
    const size_t pathEnd = std::min({rest.find(L'?', pathStart), fragmentStart, length});
    const View path = rest.substr(pathStart, pathEnd - pathStart);
    if (pathEnd < length && rest[pathEnd] == L'?') {
        m_query = makeString(rest.substr(pathEnd + 1, std::min(fragmentStart, length) - pathEnd - 1));
        m_hasQuery = true;
    }
    if (fragmentStart != View::npos) {
        m_fragment = makeString(rest.substr(fragmentStart + 1));
        m_hasFragment = true;
    }
    m_path = path.empty() ? String::empty() : normalizePath(path);
    return path;
}

void CURI::parseAuthority(View authority, const String& text) {
    View hostAndPort = authority;
    const size_t at = authority.rfind(L'@');
    if (at != View::npos) {
        m_rawUserInfo = makeString(authority.substr(0, at));
        m_userInfo = unescape(m_rawUserInfo);
        hostAndPort = authority.substr(at + 1);
    }
    // The port follows the last ":" outside the brackets of an IPv6 host.
    size_t portColon = View::npos;
    bool inBrackets = false;
    for (size_t i = 0; i < hostAndPort.size(); ++i) {
        if (hostAndPort[i] == L'[') inBrackets = true;
        else if (hostAndPort[i] == L']') inBrackets = false;
        else if (hostAndPort[i] == L':' && !inBrackets) portColon = i;
    }
    if (inBrackets) throw CURIFormatError(text);
    m_host = makeString(hostAndPort.substr(0, portColon));
    const View portText = portColon == View::npos ? View() : hostAndPort.substr(portColon + 1);
    if (portColon != View::npos) m_portText = makeString(portText);
    m_port = parsePort(portText, text);
}

String CURI::composeText() const {
    CWideTextBuffer text;
    text.reserve(size_t(m_scheme.length() + m_authority.length() + m_path.length() + m_query.length() +
                        m_fragment.length()) * 2 + 8);  // (a character may take two units)
    if (!m_relative) {
        append(text, m_scheme);
        text.append(L':');
    }
    const String path = m_path.toWide();
    if (!m_opaque) {
        // A path that begins with "//" needs an authority, even an empty one, in front of it.
        if (m_hasAuthority || viewOf(path).substr(0, 2) == L"//") {
            append(text, View(L"//"));
            append(text, m_authority);
        } else if (m_relative && firstSegmentHasColon(viewOf(path))) {
            append(text, View(L"./"));
        }
    }
    append(text, path);
    if (m_hasQuery) {
        text.append(L'?');
        append(text, m_query);
    }
    if (m_hasFragment) {
        text.append(L'#');
        append(text, m_fragment);
    }
    return text.detachString();
}

String CURI::escape(const String& part, const wchar_t* allowed) {
    if (part.isNull()) return part;
    const AsciiSet allowedSet(allowed ? allowed : L"");
    const String wide = part.toWide();
    const View chars = viewOf(wide);
    size_t i = 0;
    while (i < chars.size() && !needsEscape(chars[i], allowedSet)) ++i;
    if (i == chars.size()) return part;
    CWideTextBuffer escaped;
    append(escaped, chars.substr(0, i));
    for (; i < chars.size(); ++i) {
        const wchar_t c = chars[i];
        if (needsEscape(c, allowedSet)) {
            wchar_t* out = escaped.extend(3);
            out[0] = L'%';
            out[1] = wchar_t(unicode::upperHexDigit(unsigned(c) >> 4));
            out[2] = wchar_t(unicode::upperHexDigit(unsigned(c)));
        } else {
            escaped.append(c);
        }
    }
    return escaped.detachString();
}

String CURI::unescape(const String& text) {
    if (text.isNull()) return text;
    const String wide = text.toWide();
    const View chars = viewOf(wide);
    const wchar_t* p = chars.data();
    const wchar_t* const end = p + chars.size();
    const wchar_t* firstEscape = p;
    while (firstEscape != end && escapedByte(firstEscape, end) < 0) ++firstEscape;
    if (firstEscape == end) return text;

    CWideTextBuffer decoded;
    decoded.reserve(chars.size());  // the most it can take; pages never written cost nothing
    decoded.append(p, size_t(firstEscape - p));
    std::string run;
    run.reserve(chars.size() / 3);
    for (p = firstEscape; p != end;) {
        const int byte = escapedByte(p, end);
        if (byte >= 0) {
            run += char(byte);
            p += 3;
            continue;
        }
        if (!run.empty()) {
            appendDecodedBytes(run, decoded);
            run.clear();
        }
        decoded.append(*p++);
    }
    if (!run.empty()) appendDecodedBytes(run, decoded);
    return decoded.detachString();
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
