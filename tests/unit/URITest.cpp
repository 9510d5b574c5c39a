#include <zuno/CURI.h>
#include <zuno/CURIError.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

using namespace zuno;

namespace {

struct ParseCase {
    const wchar_t* text;
    const wchar_t* scheme;
    const wchar_t* userInfo;
    const wchar_t* host;
    int32_t port;
    const wchar_t* path;
    const wchar_t* query;
    const wchar_t* fragment;
    bool opaque;
    const wchar_t* textForm;  // nullptr: the text itself
};

const ParseCase g_parseCases[] = {
    {L"mailto:someone", L"mailto", L"", L"", -1, L"someone", L"", L"", true, nullptr},
    {L"mailto:a@b?subject=x#f", L"mailto", L"", L"", -1, L"a@b?subject=x#f", L"", L"", true, nullptr},
    {L"winresicon:shell32.dll,-1", L"winresicon", L"", L"", -1, L"shell32.dll,-1", L"", L"", true, nullptr},
    {L"C:\\dir\\..\\file", L"C", L"", L"", -1, L"\\dir\\..\\file", L"", L"", true, nullptr},
    {L"x:", L"x", L"", L"", -1, L"", L"", L"", true, nullptr},
    {L"dir/file?x#y", L"", L"", L"", -1, L"dir/file", L"x", L"y", false, nullptr},
    {L"a/b:c", L"", L"", L"", -1, L"a/b:c", L"", L"", false, nullptr},
    {L"", L"", L"", L"", -1, L"", L"", L"", false, nullptr},
    {L"?q#f?g", L"", L"", L"", -1, L"", L"q", L"f?g", false, nullptr},
    {L"a?", L"", L"", L"", -1, L"a", L"", L"", false, nullptr},
    {L"#", L"", L"", L"", -1, L"", L"", L"", false, nullptr},
    {L":x", L"", L"", L"", -1, L":x", L"", L"", false, L"./:x"},
    {L"//host/p", L"", L"", L"host", -1, L"/p", L"", L"", false, nullptr},
    {L"http://user:pw@example.com:8080/a/b?q=1&r=2#top", L"http", L"user:pw", L"example.com", 8080, L"/a/b",
     L"q=1&r=2", L"top", false, nullptr},
    {L"http://h#f?q", L"http", L"", L"h", -1, L"", L"", L"f?q", false, nullptr},
    {L"http://h?q", L"http", L"", L"h", -1, L"", L"q", L"", false, nullptr},
    {L"http://h:/x", L"http", L"", L"h", -1, L"/x", L"", L"", false, nullptr},
    {L"http://h:0080/", L"http", L"", L"h", 80, L"/", L"", L"", false, nullptr},
    {L"http://h:65535/", L"http", L"", L"h", 65535, L"/", L"", L"", false, nullptr},
    {L"http://a@b@h/", L"http", L"a@b", L"h", -1, L"/", L"", L"", false, nullptr},
    {L"http://%41lice%20B@h/", L"http", L"Alice B", L"h", -1, L"/", L"", L"", false, nullptr},
    {L"http://[::1]:8080/x", L"http", L"", L"[::1]", 8080, L"/x", L"", L"", false, nullptr},
    {L"http://[::1]/", L"http", L"", L"[::1]", -1, L"/", L"", L"", false, nullptr},
    {L"http://u@[fe80::1%25eth0]:1/", L"http", L"u", L"[fe80::1%25eth0]", 1, L"/", L"", L"", false, nullptr},
    {L"file:///C:/dir/file.txt", L"file", L"", L"", -1, L"/C:/dir/file.txt", L"", L"", false, nullptr},
    {L"file:/tmp/x", L"file", L"", L"", -1, L"/tmp/x", L"", L"", false, nullptr},
    // Dot segments.
    {L"http://h/a/./b/../c", L"http", L"", L"h", -1, L"/a/c", L"", L"", false, L"http://h/a/c"},
    {L"http://h/../../a", L"http", L"", L"h", -1, L"/a", L"", L"", false, L"http://h/a"},
    {L"http://h/a/b/..", L"http", L"", L"h", -1, L"/a/", L"", L"", false, L"http://h/a/"},
    {L"http://h/a/.?q", L"http", L"", L"h", -1, L"/a/", L"q", L"", false, L"http://h/a/?q"},
    {L"http://h/..", L"http", L"", L"h", -1, L"/", L"", L"", false, L"http://h/"},
    {L"../a/./b/..", L"", L"", L"", -1, L"../a/", L"", L"", false, L"../a/"},
    {L"a/../../b", L"", L"", L"", -1, L"../b", L"", L"", false, L"../b"},
    {L"a/..", L"", L"", L"", -1, L"", L"", L"", false, L""},
    {L"./a:b", L"", L"", L"", -1, L"a:b", L"", L"", false, L"./a:b"},
    {L"http://h/a//b/../c", L"http", L"", L"h", -1, L"/a//c", L"", L"", false, L"http://h/a//c"},
    {L"file:/.//x", L"file", L"", L"", -1, L"//x", L"", L"", false, L"file:////x"},
    {L"http://h/a/..%2F/b", L"http", L"", L"h", -1, L"/a/..%2F/b", L"", L"", false, nullptr},
};

void expectSameComponents(const IURI& actual, const IURI& expected) {
    EXPECT_EQ(actual.getScheme(), expected.getScheme());
    EXPECT_EQ(actual.getRawUserInfo(), expected.getRawUserInfo());
    EXPECT_EQ(actual.getHost(), expected.getHost());
    EXPECT_EQ(actual.getPort(), expected.getPort());
    EXPECT_EQ(actual.getPath(), expected.getPath());
    EXPECT_EQ(actual.getQuery(), expected.getQuery());
    EXPECT_EQ(actual.getFragment(), expected.getFragment());
    EXPECT_EQ(actual.isRelative(), expected.isRelative());
    EXPECT_EQ(actual.isOpaque(), expected.isOpaque());
    EXPECT_EQ(actual.toString(), expected.toString());
}

std::wstring randomText(std::mt19937& random, const std::wstring& alphabet, size_t maxLength) {
    std::wstring text(random() % (maxLength + 1), L' ');
    for (wchar_t& c : text) c = alphabet[random() % alphabet.size()];
    return text;
}

} // namespace

TEST(URI, Parse) {
    for (const ParseCase& test : g_parseCases) {
        SCOPED_TRACE(String(test.text));
        const CURI uri(test.text);
        EXPECT_EQ(uri.getScheme(), String(test.scheme));
        EXPECT_EQ(uri.isRelative(), *test.scheme == 0);
        EXPECT_EQ(uri.getUserInfo(), String(test.userInfo));
        EXPECT_EQ(uri.getHost(), String(test.host));
        EXPECT_EQ(uri.getPort(), test.port);
        EXPECT_EQ(uri.getPath(), String(test.path));
        EXPECT_EQ(uri.getQuery(), String(test.query));
        EXPECT_EQ(uri.getFragment(), String(test.fragment));
        EXPECT_EQ(uri.isOpaque(), test.opaque);
        EXPECT_EQ(uri.toString(), String(test.textForm ? test.textForm : test.text));
        expectSameComponents(CURI(uri.toString()), uri);
    }
}

TEST(URI, KeepsTheRawParts) {
    const CURI uri(L"http://us%65r@h:08/a/../b");
    EXPECT_EQ(uri.getSchemeSpecificPart(), String(L"//us%65r@h:08/a/../b"));
    EXPECT_EQ(uri.getAuthority(), String(L"us%65r@h:08"));
    EXPECT_EQ(uri.getRawUserInfo(), String(L"us%65r"));
    EXPECT_EQ(uri.getUserInfo(), String(L"user"));
    EXPECT_EQ(uri.getPortText(), String(L"08"));
    EXPECT_EQ(uri.getPort(), 8);
    EXPECT_EQ(CURI(L"mailto:someone").getSchemeSpecificPart(), String(L"someone"));
    EXPECT_EQ(CURI(L"a/b").getSchemeSpecificPart(), String(L"a/b"));
}

TEST(URI, InvalidFormat) {
    const wchar_t* const texts[] = {
        L"http://h:port/", L"http://h:65536/", L"http://h:-1/",    L"http://h:99999999999999999999/",
        L"http://h: 80/",  L"http://[::1/",    L"http://[::1",     L"//[",
        L"http://h:8a",    L"x://u@[a:b",      L"http://h:+80/",   L"http://[::1]:x/",
    };
    for (const wchar_t* text : texts) {
        SCOPED_TRACE(String(text));
        try {
            CURI uri(text);
            ADD_FAILURE() << "accepted as " << uri.toString();
        } catch (const CURIFormatError& e) {
            EXPECT_EQ(e.getMessage(), L"The URI ('" + String(text) + L"') has an invalid format.");
        }
    }
}

TEST(URI, Escape) {
    struct Case {
        const wchar_t* part;
        const wchar_t* allowed;
        const wchar_t* expected;
    } const cases[] = {
        {L"a b%", CURI::PathAllowed, L"a%20b%25"},
        {L"Größe€", CURI::PathAllowed, L"Größe€"},
        {L"a@b", CURI::UserInfoAllowed, L"a%40b"},
        {L"a@b", CURI::PathAllowed, L"a@b"},
        {L"u:p;x,&=+$/", CURI::UserInfoAllowed, L"u:p;x,&=+$%2F"},
        {L"/a?b#c", CURI::PathAllowed, L"/a%3Fb%23c"},
        {L"/a?b#c", CURI::QueryFragmentAllowed, L"/a?b%23c"},
        {L"\t\n\x7F\x1F", CURI::PathAllowed, L"%09%0A%7F%1F"},
        {L"\"<>[\\]^`{|}", CURI::QueryFragmentAllowed, L"%22%3C%3E%5B%5C%5D%5E%60%7B%7C%7D"},
        {L"!'()*~-._", CURI::PathAllowed, L"!'()*~-._"},
        {L"a:b", nullptr, L"a%3Ab"},
        {L"", CURI::PathAllowed, L""},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(String(test.part));
        EXPECT_EQ(CURI::escape(test.part, test.allowed), String(test.expected));
    }
    EXPECT_TRUE(CURI::escape(String(), CURI::PathAllowed).isEmpty());
}

TEST(URI, Unescape) {
    struct Case {
        const wchar_t* text;
        const wchar_t* expected;
    } const cases[] = {
        {L"a%20b", L"a b"},     {L"%41%2f%2F", L"A//"},   {L"%4", L"%4"},          {L"%zz%", L"%zz%"},
        {L"100%", L"100%"},     {L"%C3%A4", L"ä"},        {L"%E4", L"ä"},          {L"%C3", L"Ã"},
        {L"%C3%A4%E4", L"Ã¤ä"}, {L"%00", L"%00"},         {L"a%00b%41", L"a%00bA"}, {L"ä%20", L"ä "},
        {L"%C0%80", L"À\u0080"}, {L"%ED%A0%80", L"í\u00A0\u0080"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(String(test.text));
        EXPECT_EQ(CURI::unescape(test.text), String(test.expected));
    }
    EXPECT_EQ(CURI::unescape(L"%F0%9F%98%80"), String::fromChar(U'\U0001F600'));
}

TEST(URI, FromParts) {
    struct Case {
        const wchar_t* parts[7];  // scheme, user info, host, port, path, query, fragment
        const wchar_t* text;
        int32_t port;
    } const cases[] = {
        {{L"http", L"user name", L"example.com", L"8080", L"/a b", L"q=1 2", L"frag"},
         L"http://user%20name@example.com:8080/a%20b?q=1%202#frag", 8080},
        {{L"file", L"", L"", L"", L"/C:/dir/a b.txt", L"", L""}, L"file:///C:/dir/a%20b.txt", -1},
        {{L"mailto", L"", L"", L"", L"someone@example.com", L"", L""}, L"mailto:someone@example.com", -1},
        {{L"http", L"", L"::1", L"80", L"/", L"", L""}, L"http://[::1]:80/", 80},
        {{L"http", L"", L"h", L"", L"x", L"", L""}, L"http://h/x", -1},
        {{L"http", L"a@b", L"h", L"", L"", L"", L""}, L"http://a%40b@h", -1},
        {{L"http", L"", L"h", L"", L"/a%b#?", L"a#b", L"c#d"}, L"http://h/a%25b%23%3F?a%23b#c%23d", -1},
        {{L"", L"", L"", L"", L"a:b", L"", L""}, L"./a:b", -1},
        {{L"", L"", L"", L"", L"//x", L"", L""}, L"////x", -1},
        {{L"", L"", L"", L"", L"", L"", L""}, L"", -1},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(String(test.text));
        const auto& p = test.parts;
        const CURI uri(p[0], p[1], p[2], p[3], p[4], p[5], p[6]);
        EXPECT_EQ(uri.toString(), String(test.text));
        EXPECT_EQ(uri.getPort(), test.port);
        expectSameComponents(CURI(uri.toString()), uri);
    }
    EXPECT_THROW(CURI(L"http", L"", L"h", L"eighty", L"/", L"", L""), CURIFormatError);
}

TEST(URI, PartsComeBackDecoded) {
    std::mt19937 random(7);
    const std::wstring alphabet = L"ab /?#%@:;&=+$[]\\\"<>^`{|}\t~\u00e4\u20ac";
    for (int i = 0; i < 2000; ++i) {
        const String userInfo = String::fromWide(L"u" + randomText(random, alphabet, 8));
        const String path = String::fromWide(L"/" + randomText(random, alphabet, 12));
        const String query = String::fromWide(L"q" + randomText(random, alphabet, 8));
        const String fragment = String::fromWide(L"f" + randomText(random, alphabet, 8));
        SCOPED_TRACE(testing::Message() << userInfo << " | " << path << " | " << query << " | " << fragment);
        const CURI uri(L"http", userInfo, L"h", L"", path, query, fragment);
        EXPECT_EQ(uri.getUserInfo(), userInfo);
        EXPECT_EQ(uri.getHost(), String(L"h"));
        EXPECT_EQ(uri.getDecodedPath(), path);
        EXPECT_EQ(CURI::unescape(uri.getQuery()), query);
        EXPECT_EQ(CURI::unescape(uri.getFragment()), fragment);
    }
}

TEST(URI, ArbitraryTextNeverBreaksTheParser) {
    // Every text either fails with a format error or has a text form that parses back to
    // the same URI.
    std::mt19937 random(11);
    const std::wstring alphabet = L":/?#[]@%.aZ09 -\\";
    int parsed = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::wstring text = randomText(random, alphabet, 14);
        try {
            const CURI uri(String::fromWide(text));
            ++parsed;
            SCOPED_TRACE(String::fromWide(text));
            expectSameComponents(CURI(uri.toString()), uri);
        } catch (const CURIFormatError&) {
        }
        if (HasFailure()) break;
    }
    EXPECT_GT(parsed, 10000);
}

TEST(URI, Queries) {
    const P<IURI> uri = make<CURI>(L"FILE:///data/My%20Store.XML?x#y");
    EXPECT_TRUE(uri->isScheme(L"file"));
    EXPECT_FALSE(uri->isScheme(L"fil"));
    EXPECT_TRUE(uri->hasExtension(L".xml"));
    EXPECT_FALSE(uri->hasExtension(L".json"));
    EXPECT_EQ(uri->getDecodedPath(), String(L"/data/My Store.XML"));
    EXPECT_EQ(uri->getFileName(), String(L"My Store.XML"));
    EXPECT_EQ(CURI(L"file:///a/b%2Fc.txt").getFileName(), String(L"b/c.txt"));
    EXPECT_EQ(CURI(L"file:///a/").getFileName(), String(L""));
    EXPECT_EQ(CURI(L"mailto:x").getFileName(), String(L"x"));

    const CURI copy(*static_cast<const CURI*>(uri.get()));
    EXPECT_EQ(copy.getRefCount(), 1);
    expectSameComponents(copy, *uri);
    EXPECT_EQ(CURI(String()).toString(), String(L""));
}
