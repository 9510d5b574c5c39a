#include <zuno/CURI.h>
#include <zuno/CURIError.h>

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

using namespace zuno;

// "scheme|raw user info|host|port|path|query|fragment", " opaque" appended for an opaque URI,
// then " = " and the text form.
static String describe(const IURI& uri) {
    return uri.getScheme() + L"|" + uri.getRawUserInfo() + L"|" + uri.getHost() + L"|"
           + String::fromWide(std::to_wstring(uri.getPort())) + L"|" + uri.getPath() + L"|" + uri.getQuery() + L"|"
           + uri.getFragment() + (uri.isOpaque() ? L" opaque = " : L" = ") + uri.toString();
}

// Parses the URI's text form again: it must give the same URI.
static void expectRoundTrip(const IURI& uri) {
    EXPECT_EQ(describe(CURI(uri.toString())), describe(uri));
    EXPECT_EQ(uri.isRelative(), uri.getScheme().isEmpty());
}

static std::wstring randomText(std::mt19937& random, const std::wstring& alphabet, size_t maxLength) {
    std::wstring text(random() % (maxLength + 1), L' ');
    for (wchar_t& c : text) c = alphabet[random() % alphabet.size()];
    return text;
}

TEST(URI, Parse) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"mailto:a@b?subject=x#f", L"mailto|||-1|a@b?subject=x#f|| opaque = mailto:a@b?subject=x#f"},
        {L"C:\\dir\\..\\file", L"C|||-1|\\dir\\..\\file|| opaque = C:\\dir\\..\\file"},
        {L"x:", L"x|||-1||| opaque = x:"},
        {L"a/b:c", L"|||-1|a/b:c|| = a/b:c"},
        {L"", L"|||-1||| = "},
        {L"?q#f?g", L"|||-1||q|f?g = ?q#f?g"},
        {L"a?", L"|||-1|a|| = a?"},
        {L"#", L"|||-1||| = #"},
        {L":x", L"|||-1|:x|| = ./:x"},
        {L"//host/p", L"||host|-1|/p|| = //host/p"},
        {L"http://user:pw@example.com:8080/a/b?q=1&r=2#top",
         L"http|user:pw|example.com|8080|/a/b|q=1&r=2|top = http://user:pw@example.com:8080/a/b?q=1&r=2#top"},
        {L"http://h#f?q", L"http||h|-1|||f?q = http://h#f?q"},
        {L"http://h:/x", L"http||h|-1|/x|| = http://h:/x"},
        {L"http://h:0080/", L"http||h|80|/|| = http://h:0080/"},
        {L"http://h:65535/", L"http||h|65535|/|| = http://h:65535/"},
        {L"http://a@b@h/", L"http|a@b|h|-1|/|| = http://a@b@h/"},
        {L"http://[::1]:8080/x", L"http||[::1]|8080|/x|| = http://[::1]:8080/x"},
        {L"http://u@[fe80::1%25eth0]:1/", L"http|u|[fe80::1%25eth0]|1|/|| = http://u@[fe80::1%25eth0]:1/"},
        {L"file:///C:/dir/file.txt", L"file|||-1|/C:/dir/file.txt|| = file:///C:/dir/file.txt"},
        // Dot segments.
        {L"http://h/a/./b/../c", L"http||h|-1|/a/c|| = http://h/a/c"},
        {L"http://h/../../a", L"http||h|-1|/a|| = http://h/a"},
        {L"http://h/a/b/..", L"http||h|-1|/a/|| = http://h/a/"},
        {L"http://h/a/.?q", L"http||h|-1|/a/|q| = http://h/a/?q"},
        {L"../a/./b/..", L"|||-1|../a/|| = ../a/"},
        {L"a/../../b", L"|||-1|../b|| = ../b"},
        {L"a/..", L"|||-1||| = "},
        {L"./a:b", L"|||-1|a:b|| = ./a:b"},
        {L"http://h/a//b/../c", L"http||h|-1|/a//c|| = http://h/a//c"},
        {L"file:/.//x", L"file|||-1|//x|| = file:////x"},
        {L"http://h/a/..%2F/b", L"http||h|-1|/a/..%2F/b|| = http://h/a/..%2F/b"},
    };
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(String(text));
        const CURI uri(text);
        EXPECT_EQ(describe(uri), String(expected));
        expectRoundTrip(uri);
    }
}

TEST(URI, Accessors) {
    const CURI raw(L"http://us%65r@h:08/a/../b");
    EXPECT_EQ(raw.getSchemeSpecificPart(), String(L"//us%65r@h:08/a/../b"));
    EXPECT_EQ(raw.getAuthority(), String(L"us%65r@h:08"));
    EXPECT_EQ(raw.getUserInfo(), String(L"user"));
    EXPECT_EQ(raw.getPortText(), String(L"08"));
    EXPECT_EQ(CURI(L"mailto:someone").getSchemeSpecificPart(), String(L"someone"));
    const P<IURI> uri = make<CURI>(L"FILE:///data/My%20Store.XML?x#y");
    EXPECT_TRUE(uri->isScheme(L"file") && uri->hasExtension(L".xml"));
    EXPECT_FALSE(uri->isScheme(L"fil") || uri->hasExtension(L".json"));
    EXPECT_EQ(uri->getFileName(), String(L"My Store.XML"));
    EXPECT_EQ(CURI(L"file:///a/b%2Fc.txt").getFileName(), String(L"b/c.txt"));
    EXPECT_EQ(CURI(L"file:///a/").getFileName(), String(L""));
    EXPECT_EQ(CURI(L"mailto:x").getFileName(), String(L"x"));
    const CURI copy(*static_cast<const CURI*>(uri.get()));
    EXPECT_EQ(copy.getRefCount(), 1);
    EXPECT_EQ(describe(copy), describe(*uri));
    EXPECT_EQ(CURI(String()).toString(), String(L""));
}

TEST(URI, InvalidFormat) {
    for (const wchar_t* text : {L"http://h:port/", L"http://h:65536/", L"http://h:-1/", L"http://h:99999999999999999999/",
                                L"http://h: 80/", L"http://[::1/", L"http://[::1", L"//[", L"http://h:8a", L"x://u@[a:b",
                                L"http://h:+80/", L"http://[::1]:x/"}) {
        try {
            const CURI uri(text);
            ADD_FAILURE() << "accepted " << describe(uri);
        } catch (const CURIFormatError& e) {
            EXPECT_EQ(e.getMessage(), L"The URI ('" + String(text) + L"') has an invalid format.");
        }
    }
    EXPECT_THROW(CURI(L"http", L"", L"h", L"eighty", L"/", L"", L""), CURIFormatError);
}

TEST(URI, EscapeAndUnescape) {
    const wchar_t* const escapes[][3] = {
        {L"a b%", CURI::PathAllowed, L"a%20b%25"},         {L"Größe€", CURI::PathAllowed, L"Größe€"},
        {L"a@b", CURI::UserInfoAllowed, L"a%40b"},          {L"a@b", CURI::PathAllowed, L"a@b"},
        {L"u:p;x,&=+$/", CURI::UserInfoAllowed, L"u:p;x,&=+$%2F"},
        {L"/a?b#c", CURI::PathAllowed, L"/a%3Fb%23c"},      {L"/a?b#c", CURI::QueryFragmentAllowed, L"/a?b%23c"},
        {L"\t\n\x7F\x1F", CURI::PathAllowed, L"%09%0A%7F%1F"}, {L"!'()*~-._", CURI::PathAllowed, L"!'()*~-._"},
        {L"\"<>[\\]^`{|}", CURI::QueryFragmentAllowed, L"%22%3C%3E%5B%5C%5D%5E%60%7B%7C%7D"},
        {L"a:b", nullptr, L"a%3Ab"},
    };
    for (const auto& [part, allowed, expected] : escapes)
        EXPECT_EQ(CURI::escape(part, allowed), String(expected)) << String(part);
    EXPECT_TRUE(CURI::escape(String(), CURI::PathAllowed).isEmpty());

    const std::pair<const wchar_t*, const wchar_t*> unescapes[] = {
        {L"a%20b", L"a b"},     {L"%41%2f%2F", L"A//"},   {L"%4", L"%4"},          {L"%zz%", L"%zz%"},
        {L"100%", L"100%"},     {L"%C3%A4", L"ä"},        {L"%E4", L"ä"},          {L"%C3", L"Ã"},
        {L"%C3%A4%E4", L"Ã¤ä"}, {L"%00", L"%00"},         {L"a%00b%41", L"a%00bA"}, {L"ä%20", L"ä "},
        {L"%C0%80", L"À\u0080"}, {L"%ED%A0%80", L"í\u00A0\u0080"}, {L"%F0%9F%98%80", L"\U0001F600"},
    };
    for (const auto& [text, expected] : unescapes) EXPECT_EQ(CURI::unescape(text), String(expected)) << String(text);
}

TEST(URI, FromParts) {
    const std::pair<std::array<const wchar_t*, 7>, const wchar_t*> cases[] = {
        // scheme, user info, host, port, path, query, fragment
        {{L"http", L"user name", L"example.com", L"8080", L"/a b", L"q=1 2", L"frag"},
         L"http://user%20name@example.com:8080/a%20b?q=1%202#frag"},
        {{L"file", L"", L"", L"", L"/C:/dir/a b.txt", L"", L""}, L"file:///C:/dir/a%20b.txt"},
        {{L"mailto", L"", L"", L"", L"someone@example.com", L"", L""}, L"mailto:someone@example.com"},
        {{L"http", L"", L"::1", L"80", L"/", L"", L""}, L"http://[::1]:80/"},
        {{L"http", L"", L"h", L"", L"x", L"", L""}, L"http://h/x"},
        {{L"http", L"a@b", L"h", L"", L"", L"", L""}, L"http://a%40b@h"},
        {{L"http", L"", L"h", L"", L"/a%b#?", L"a#b", L"c#d"}, L"http://h/a%25b%23%3F?a%23b#c%23d"},
        {{L"", L"", L"", L"", L"a:b", L"", L""}, L"./a:b"},
        {{L"", L"", L"", L"", L"//x", L"", L""}, L"////x"},
        {{L"", L"", L"", L"", L"", L"", L""}, L""},
    };
    for (const auto& [p, text] : cases) {
        SCOPED_TRACE(String(text));
        const CURI uri(p[0], p[1], p[2], p[3], p[4], p[5], p[6]);
        EXPECT_EQ(uri.toString(), String(text));
        expectRoundTrip(uri);
    }
}

TEST(URI, RandomPartsComeBackDecoded) {
    std::mt19937 random(7);
    for (int i = 0; i < 1000; ++i) {
        const String part = String::fromWide(L"/" + randomText(random, L"ab /?#%@:;&=+$[]\\\"<>^`{|}\t~\u00e4\u20ac", 12));
        const CURI uri(L"http", part, L"h", L"", part, part, part);
        for (const String& decoded : {uri.getUserInfo(), uri.getDecodedPath(), CURI::unescape(uri.getQuery()),
                                      CURI::unescape(uri.getFragment())})
            EXPECT_EQ(decoded, part);
    }
}

TEST(URI, ArbitraryTextFailsCleanlyOrRoundTrips) {
    std::mt19937 random(11);
    int parsed = 0;
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        const String text = String::fromWide(randomText(random, L":/?#[]@%.aZ09 -\\", 14));
        try {
            const CURI uri(text);
            ++parsed;
            SCOPED_TRACE(text);
            expectRoundTrip(uri);
        } catch (const CURIFormatError&) {
        }
    }
    EXPECT_GT(parsed, 10000);
}
