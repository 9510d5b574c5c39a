#pragma once

#include <zuno/CObject.h>
#include <zuno/IURI.h>

#include <string_view>

namespace zuno {

// Parses and prints the generic URI syntax: scheme ":" ["//" authority] path ["?" query]
// ["#" fragment]. Immutable after construction.
//
// Parsing: the scheme ends at the first ":" that comes before any "/", "?" or "#" and is not
// the first character (":x" is a relative path). A URI with a scheme whose remainder does
// not begin with "/" is opaque: the whole remainder is its path ("mailto:a@b?x" has the path
// "a@b?x"). User information ends at the last "@" of the authority; the port follows the
// last ":" outside square brackets and must be a decimal number up to 65535. "." and ".."
// segments of a hierarchical path are removed; ".." above the root of an absolute path is
// dropped, while leading ".." segments of a relative path stay. Absent components read as
// empty texts; the text form still tells "a?" from "a", keeps the authority as written and
// always parses back to the same URI.
class CURI : public CObject, public IURI {
public:
    // Parses `text`; raises CURIFormatError for a text that cannot be used (a port that is
    // not a number, an unclosed IPv6 host).
    explicit CURI(const String& text);
    // Builds a URI from its parts, escaping user information, path, query and fragment (see
    // escape), and parses the assembled text; an empty port text gives -1. A host with a
    // ":" that is not in brackets gets them ("::1" becomes "[::1]"). The authority is
    // written when there is a host, user information or port, and for an absolute path
    // after a scheme ("file:///dir"); a path after an authority begins with "/".
    CURI(const String& scheme, const String& userInfo, const String& host, const String& portText,
         const String& path, const String& query, const String& fragment);
    CURI(const CURI& other);

    // Characters kept unescaped besides the unreserved ones, per part.
    static const wchar_t* const UserInfoAllowed;       // ";:,&=+$"
    static const wchar_t* const PathAllowed;           // ";:,/@&=+$"
    static const wchar_t* const QueryFragmentAllowed;  // ";:,/?@&=+$"

    // Escapes every control character, blank, DEL and URI delimiter that `allowed` does not
    // list as "%" and two upper-case hex digits of its low eight bits. Characters above
    // 0x7F stay as they are.
    static String escape(const String& part, const wchar_t* allowed);
    // Decodes %XX escapes. A run of escapes that forms valid UTF-8 becomes the characters it
    // encodes; otherwise each escape becomes the character XX. Malformed escapes and "%00"
    // stay as text, so that a decoded path can never be cut short by a NUL.
    static String unescape(const String& text);

    String getScheme() const override;
    bool isScheme(const String& scheme) const override;
    String getSchemeSpecificPart() const override;
    String getAuthority() const override;
    String getUserInfo() const override;
    String getRawUserInfo() const override;
    String getHost() const override;
    String getPortText() const override;
    int32_t getPort() const override;
    String getPath() const override;
    String getDecodedPath() const override;
    String getQuery() const override;
    String getFragment() const override;
    bool isRelative() const override;
    bool isOpaque() const override;
    bool hasExtension(const String& extension) const override;
    String getFileName() const override;
    String toString() const override;

private:
    void parse(const String& text);
    std::wstring_view parseHierarchical(std::wstring_view rest, const String& text);
    void parseAuthority(std::wstring_view authority, const String& text);
    String composeText() const;

    String m_text = String::empty();
    String m_scheme = String::empty();
    String m_schemeSpecificPart = String::empty();
    String m_authority = String::empty();
    String m_userInfo = String::empty();
    String m_rawUserInfo = String::empty();
    String m_host = String::empty();
    String m_portText = String::empty();
    int32_t m_port = -1;
    String m_path = String::empty();
    String m_query = String::empty();
    String m_fragment = String::empty();
    bool m_hasAuthority = false;
    bool m_hasQuery = false;
    bool m_hasFragment = false;
    bool m_relative = true;
    bool m_opaque = false;
    bool m_parsed = false;
};

} // namespace zuno
