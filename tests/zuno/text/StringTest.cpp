#include <zuno/CError.h>
#include <zuno/CString.h>
#include <zuno/String.h>

#include <gtest/gtest.h>

#include <string>

using namespace zuno;

static String utf8(const char* text) { return String::fromUTF8(text); }

// Each row: what the code answered, what it should have answered.
template <class T>
static void expectRows(std::initializer_list<std::pair<T, T>> rows) {
    int row = 0;
    for (const auto& [actual, expected] : rows) EXPECT_EQ(actual, expected) << "row " << row++;
}

TEST(String, NullIsNotEmptyAndLengthsCopy) {
    const String wide = String(static_cast<const char*>(nullptr)).toWide();
    EXPECT_TRUE(wide.isNull() && wide.getEncoding() == Encoding::Wide);
    EXPECT_TRUE(String::fromUTF8(nullptr).isNull() && String(static_cast<const wchar_t*>(nullptr), 5).isNull());
    EXPECT_EQ(String(), String::null(Encoding::UTF8));
    EXPECT_TRUE(String::empty().isEmpty());
    EXPECT_NE(String::empty(), String());
    const char text[] = "abcdef";
    EXPECT_STREQ(String(text, 3).c_str(), "abc") << "a copy carries its own terminator";
    EXPECT_EQ(String(text).c_str(), text) << "text without a length is borrowed";
    EXPECT_STREQ(String(L"wide text", 4).wc_str(), L"wide");
}

TEST(String, CodecsRoundTripWithEqualHashes) {
    const String text = utf8("Gr\xC3\xBC\xC3\x9F" "e \xE2\x82\xAC \xF0\x9F\x98\x80 \xE4\xB8\xAD");  // Grüße € 😀 中
    for (Encoding encoding : {Encoding::Wide, Encoding::UTF8, Encoding::UTF16, Encoding::UTF32}) {
        const String converted = text.convertTo(encoding);
        EXPECT_EQ(converted.getEncoding(), encoding);
        EXPECT_EQ(converted.length(), 11);
        EXPECT_EQ(converted, text);
        EXPECT_EQ(converted.hash(), text.hash());
        EXPECT_EQ(converted.toStdString(), text.toStdString());
    }
    EXPECT_EQ(text.toWide().charAt(8), U'\U0001F600');
    const String latin1 = utf8("\xC3\xA9\xE2\x82\xAC").convertTo(Encoding::Latin1);
    EXPECT_EQ(latin1.getChars(), U"\u00e9?") << "Latin-1 cannot hold the euro sign";
    EXPECT_EQ(latin1->getByteLength(), 2);
    EXPECT_EQ(String::fromUTF8("caf\xC3\xA9").toCP().toWide(), String(L"caf\u00e9")) << "the C.UTF-8 locale";
}

TEST(String, InvalidInputDecodesAsReplacementCharacters) {
    const std::pair<const char*, std::u32string> cases[] = {
        {"a\x80" "b", U"a\uFFFDb"},                          // stray continuation byte
        {"\xC0\xAF", U"\uFFFD\uFFFD"},                       // overlong slash
        {"\xED\xA0\x80", U"\uFFFD\uFFFD\uFFFD"},             // encoded surrogate
        {"\xF4\x90\x80\x80", U"\uFFFD\uFFFD\uFFFD\uFFFD"},   // above U+10FFFF
        {"x\xE2\x82", U"x\uFFFD"},                           // truncated at the end: no read past it
        {"\xF0\x9F\x98" "A", U"\uFFFDA"},                    // truncated in the middle
        {"\xFF", U"\uFFFD"},
    };
    for (const auto& [bytes, chars] : cases) {
        const String text = String::fromUTF8(bytes);
        EXPECT_EQ(text.getChars(), chars) << bytes;
        EXPECT_EQ(text.length(), int32_t(chars.size()));
    }
    const char16_t loneHigh[] = {u'a', 0xD83D, u'b', 0};
    EXPECT_EQ(String(createString(Encoding::UTF16, loneHigh, 6)).getChars(), U"a\uFFFDb");
    const char32_t outOfRange[] = {0x110000, 0xDC00, U'z'};
    const String utf32(createString(Encoding::UTF32, outOfRange, 12));
    EXPECT_EQ(utf32.getChars(), U"\uFFFD\uFFFDz");
    EXPECT_EQ(utf32.charAt(0), U'\uFFFD');
}

// The one-pass decoder into wide text reads every byte sequence as the UTF-8 codec does, on
// either side of the short-text limit and across its sixteen-byte ASCII steps.
TEST(String, UTF8BecomesWideTextAsTheCodecReadsIt) {
    const std::string pieces[] = {"plain ascii text", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
                                  "\xEF\xBF\xBD", "\xFF", "\xC3", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                                  "\xE0\x80\xAF", std::string(1, '\0'), "0123456789abcde"};
    for (const size_t repeat : {1, 5, 40}) {
        std::string bytes;
        for (size_t round = 0; round < repeat; ++round)
            for (size_t i = 0; i < std::size(pieces); ++i) bytes += pieces[(i * 7 + round) % std::size(pieces)];
        for (size_t cut = 0; cut < 40; ++cut) {
            const std::string text = bytes.substr(cut);
            const String wide = String::fromUTF8ToWide(text);
            const String reference = String::fromUTF8(text);
            ASSERT_EQ(wide.getEncoding(), Encoding::Wide);
            EXPECT_EQ(wide.getChars(), reference.getChars()) << text.size() << " bytes";
            EXPECT_EQ(wide.length(), reference.length());
            EXPECT_EQ(reference.toWide().getChars(), reference.getChars());
        }
    }
    EXPECT_EQ(String::fromUTF8ToWide("abc\xC3\xA9").toStdWString(), L"abc\u00e9") << "measured up to the NUL";
    EXPECT_TRUE(String::fromUTF8ToWide(nullptr).isNull());
}

TEST(String, SearchCountsCharacters) {
    const String text(L"one two one two");
    expectRows<int32_t>({
        {text.find(L"two", 5), 12},  {text.find(L"three"), -1},     {text.rfind(L"one"), 8},
        {text.rfind(L"one", 7), 0},  {text.find(U'w'), 5},          {text.rfind(U'o', 10), 8},
        {text.findAnyOf(L"wt"), 4},  {text.rfindAnyOf(L"ne"), 10},  {text.find(L"one", 100), -1},
        {String(L"Hello").compareNoCase(L"hELLO"), 0},
        {utf8("\xF0\x9F\x98\x80x").find(U'x'), 1},  {String(L"\U0001F600x").toWide().find(L"x"), 1},
    });
    expectRows<bool>({
        {text.endsWith(L" two"), true},  {text.startsWithNoCase(L"ONE"), true},  {text.endsWith(L"one two one two!"), false},
        {String(L"report.XML").endsWithNoCase(L".xml"), true},  {String(L"\u00c4rger").equalsNoCase(L"\u00e4RGER"), true},
        {String(L"ab") == String(L"abc"), false},  {String(L"apple") < String(L"banana"), true},
        {String(L"b") < String(L"abc"), false},
    });
}

TEST(String, NewTextFromOldText) {
    const String text(L"  Hello, World \t\n");
    expectRows<String>({
        {text.trim().toUpper(), L"HELLO, WORLD"},
        {text.trimLeft(), L"Hello, World \t\n"},
        {text.trimRight(), L"  Hello, World"},
        {String(L"\u00c4\u00d6").toLower(), L"\u00e4\u00f6"},
        {String(L"abcdef").substring(2, 4), L"cd"},
        {String(L"abcdef").substring(4), L"ef"},
        {String(L"abc").substring(5, 9), String::empty()},
        {String(L"abc").substring(-3, 2), L"ab"},
        {String("ab") + String(L"cd") + utf8("\xC3\xA9"), L"abcd\u00e9"},
        {String(L"a,b,,c").replace(L",", L"; "), L"a; b; ; c"},
        {String(L"aaa").replace(L"aa", L"b"), L"ba"},
        {String(L"abc").replace(L"", L"x"), L"abc"},
    });
    const auto pieces = String(L"a,,b,").split(L",");
    EXPECT_EQ(pieces, (std::vector<String>{L"a", String::empty(), L"b", String::empty()}));
    EXPECT_EQ(String(L"abc").split(L"").size(), 1u);
}

TEST(String, AccessOutsideTheTextOrItsWidthRaises) {
    EXPECT_THROW(String(L"ab").charAt(2), CException);
    EXPECT_THROW(String(L"ab").charAt(-1), CException);
    EXPECT_THROW(String().charAt(0), CException);
    EXPECT_STREQ(String(L"wide").toCP().c_str(), "wide");
    EXPECT_THROW(String(L"wide").c_str(), CException);
    EXPECT_THROW(String("narrow").wc_str(), CException);
    EXPECT_EQ(String::fromUTF8("x\xC3\xA9").toStdWString(), L"x\u00e9");
}

TEST(String, NumbersParseOrRaise) {
    EXPECT_EQ(String(L" 42 ").toInt32(), 42);
    EXPECT_EQ(String(L"-2147483648").toInt32(), INT32_MIN);
    EXPECT_EQ(String(L"+7").toInt64(), 7);
    EXPECT_EQ(String(L"9223372036854775807").toInt64(), INT64_MAX);
    EXPECT_EQ(String(L"18446744073709551615").toUInt64(), UINT64_MAX);
    EXPECT_DOUBLE_EQ(String(L"-2.5e3").toDouble(), -2500.0);
    EXPECT_DOUBLE_EQ(String(L".5").toDouble(), 0.5);

    const auto errorOf = [](const auto& parse) {
        try {
            parse();
        } catch (const CParseError& error) {
            return error.getMessage();
        }
        return String(L"accepted");
    };
    for (const wchar_t* bad : {L"", L"  ", L"12a", L"2147483648", L"--1", L"+-1", L"1 2", L"\u0661"})
        EXPECT_EQ(errorOf([bad] { String(bad).toInt32(); }), String(L"Error parsing integer.")) << String(bad);
    EXPECT_EQ(errorOf([] { String(L"-1").toUInt64(); }), String(L"Error parsing integer."));
    EXPECT_EQ(errorOf([] { String(L"1.2.3").toDouble(); }), String(L"Error parsing floating point value."));
}
