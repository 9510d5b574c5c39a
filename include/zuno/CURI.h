#pragma once

#include <zuno/CObject.h>
#include <zuno/IURI.h>

namespace zuno {

// Parses and prints the generic URI syntax: scheme ":" ["//" authority] path ["?" query]
// ["#" fragment]. Immutable after construction.
class CURI : public CObject, public IURI {
public:
    // Parses `text`; raises CURIFormatError for a text that cannot be used (a port that is
    // not a number, an unclosed IPv6 host).
    explicit CURI(const String& text);
    // Builds a URI from its parts, escaping each (see escape); an empty port text gives -1.
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
    // Decodes %XX escapes (each into the character XX); malformed escapes stay as text.
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
    // Fields are filled by the parser (CURI.cpp); see the getters.
    String m_scheme;
    String m_schemeSpecificPart;
    String m_authority;
    String m_userInfo;
    String m_rawUserInfo;
    String m_host;
    String m_portText;
    int32_t m_port = -1;
    String m_path;
    String m_query;
    String m_fragment;
    bool m_relative = true;
    bool m_opaque = false;
    bool m_parsed = false;
};

} // namespace zuno
