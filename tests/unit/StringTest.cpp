#include <zuno/CError.h>
#include <zuno/CString.h>
#include <zuno/String.h>

#include <gtest/gtest.h>

#include <string>
#include <unordered_map>

using namespace zuno;

namespace {

String utf8(const char* text) { return String::fromUTF8(text); }

std::string bytesOf(const String& text) {
    return std::string(static_cast<const char*>(text->getData()), size_t(text->getByteLength()));
}

} // namespace

TEST(String, NullStringsAreDistinctFromEmptyOnesAndSurviveConversion) {
    const String fromNullNarrow(static_cast<const char*>(nullptr));
    EXPECT_TRUE(fromNullNarrow.isNull());
    EXPECT_EQ(fromNullNarrow.getEncoding(), Encoding::CodePage);
    const String wide = fromNullNarrow.toWide();
    EXPECT_TRUE(wide.isNull());
    EXPECT_EQ(wide.getEncoding(), Encoding::Wide);
    EXPECT_EQ(wide.object(), String::null(Encoding::Wide).object()) << "one null string per encoding";
    EXPECT_TRUE(String().isNull());
    EXPECT_TRUE(String::fromUTF8(nullptr).isNull());
    EXPECT_TRUE(String(static_cast<const wchar_t*>(nullptr), 5).isNull());

    const String empty = String::empty();
    EXPECT_FALSE(empty.isNull());
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_NE(empty, String());
    EXPECT_EQ(String(), String::null(Encoding::UTF8));
}

TEST(String, LengthArgumentsCopyAndTerminate) {
    const char text[] = "abcdef";
    const String whole("abc", -1);
    const String prefix(text, 3);
    EXPECT_EQ(whole, prefix);
    EXPECT_EQ(prefix.length(), 3);
    EXPECT_STREQ(prefix.c_str(), "abc") << "a copy carries its own terminator";
    EXPECT_NE(prefix.c_str(), text);
    const String borrowed(text);
    EXPECT_EQ(borrowed.c_str(), text) << "text without a length is borrowed";
    const String wide(L"wide text", 4);
    EXPECT_STREQ(wide.wc_str(), L"wide");
}

TEST(String, ConversionToTheSameEncodingSharesTheObject) {
    const String narrow("same", -1);
    EXPECT_EQ(narrow.toCP().object(), narrow.object());
    const String wide(L"same");
    EXPECT_EQ(wide.toWide().object(), wide.object());
    EXPECT_NE(wide.toUTF8().object(), wide.object());
}

TEST(String, CodecsRoundTripEveryEncoding) {
    const String text = utf8("Gr\xC3\xBC\xC3\x9F" "e \xE2\x82\xAC \xF0\x9F\x98\x80 \xE4\xB8\xAD");  // Grüße € 😀 中
    ASSERT_EQ(text.length(), 11);
    for (Encoding encoding : {Encoding::Wide, Encoding::UTF8, Encoding::UTF16, Encoding::UTF32}) {
        const String converted = text.convertTo(encoding);
        EXPECT_EQ(converted.getEncoding(), encoding);
        EXPECT_EQ(converted.length(), 11);
        EXPECT_EQ(converted, text);
        EXPECT_EQ(converted.hash(), text.hash());
        EXPECT_EQ(converted.toUTF8().toStdString(), text.toStdString());
    }
    EXPECT_EQ(text.toWide().charAt(8), U'\U0001F600');
    EXPECT_EQ(bytesOf(utf8("\xC3\xA9").convertTo(Encoding::Latin1)), "\xE9");
    EXPECT_EQ(bytesOf(utf8("\xE2\x82\xAC").convertTo(Encoding::Latin1)), "?") << "Latin-1 cannot hold the euro sign";
    EXPECT_EQ(String::fromUTF8("caf\xC3\xA9").toCP().toWide(), String(L"caf\u00e9")) << "the C.UTF-8 locale";
}

TEST(String, InvalidInputDecodesAsReplacementCharacters) {
    struct Case {
        const char* bytes;
        std::u32string chars;
    };
    const Case cases[] = {
        {"a\x80" "b", U"a\uFFFDb"},            // stray continuation byte
        {"\xC0\xAF", U"\uFFFD\uFFFD"},         // overlong slash
        {"\xED\xA0\x80", U"\uFFFD\uFFFD\uFFFD"},  // encoded surrogate
        {"\xF4\x90\x80\x80", U"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above U+10FFFF
        {"x\xE2\x82", U"x\uFFFD"},             // truncated at the end: no read past it
        {"\xF0\x9F\x98" "A", U"\uFFFDA"},       // truncated in the middle
        {"\xFF", U"\uFFFD"},
    };
    for (const Case& c : cases) {
        const String text = String::fromUTF8(c.bytes);
        EXPECT_EQ(text.getChars(), c.chars) << c.bytes;
        EXPECT_EQ(text.length(), int32_t(c.chars.size()));
    }
    const char16_t loneHigh[] = {u'a', 0xD83D, u'b', 0};
    const String utf16(createString(Encoding::UTF16, loneHigh, 6));
    EXPECT_EQ(utf16.getChars(), U"a\uFFFDb");
    const char32_t outOfRange[] = {0x110000, 0xDC00, U'z'};
    const String utf32(createString(Encoding::UTF32, outOfRange, 12));
    EXPECT_EQ(utf32.getChars(), U"\uFFFD\uFFFDz");
    EXPECT_EQ(utf32.charAt(0), U'\uFFFD');
}

TEST(String, ComparisonAndHashing) {
    EXPECT_LT(String(L"apple").compare(L"banana"), 0);
    EXPECT_GT(String(L"b").compare(L"abc"), 0);
    EXPECT_EQ(String(L"Hello").compareNoCase(L"hELLO"), 0);
    EXPECT_TRUE(String(L"\u00c4rger").equalsNoCase(L"\u00e4RGER"));
    EXPECT_EQ(String(L"x")->compareTo(*String("x").object()), 0);
    EXPECT_NE(String(L"ab"), String(L"abc"));

    std::unordered_map<String, int> table;
    table[String("key", -1)] = 1;
    table[utf8("caf\xC3\xA9")] = 2;
    EXPECT_EQ(table.at(L"key"), 1) << "equal texts in other encodings find the entry";
    EXPECT_EQ(table.at(String(L"caf\u00e9").convertTo(Encoding::UTF16)), 2);
}

TEST(String, SearchFromPositions) {
    const String text(L"one two one two");
    EXPECT_EQ(text.find(L"two"), 4);
    EXPECT_EQ(text.find(L"two", 5), 12);
    EXPECT_EQ(text.find(L"three"), -1);
    EXPECT_EQ(text.rfind(L"one"), 8);
    EXPECT_EQ(text.rfind(L"one", 7), 0);
    EXPECT_EQ(text.find(U'w'), 5);
    EXPECT_EQ(text.rfind(U'o', 10), 8);
    EXPECT_EQ(text.findAnyOf(L"wt"), 4);
    EXPECT_EQ(text.rfindAnyOf(L"ne"), 10);
    EXPECT_EQ(text.find(L"one", 100), -1);
    EXPECT_TRUE(text.startsWith(L"one "));
    EXPECT_TRUE(text.endsWith(L" two"));
    EXPECT_FALSE(text.endsWith(L"one two one two!"));
    EXPECT_TRUE(text.startsWithNoCase(L"ONE"));
    EXPECT_TRUE(String(L"report.XML").endsWithNoCase(L".xml"));
    // Positions count characters, not code units or bytes.
    EXPECT_EQ(utf8("\xF0\x9F\x98\x80x").find(U'x'), 1);
    EXPECT_EQ(String(L"\U0001F600x").toWide().find(L"x"), 1);
}

TEST(String, NewTextFromOldText) {
    const String text(L"  Hello, World \t\n");
    EXPECT_EQ(text.trim(), String(L"Hello, World"));
    EXPECT_EQ(text.trimLeft(), String(L"Hello, World \t\n"));
    EXPECT_EQ(text.trimRight(), String(L"  Hello, World"));
    EXPECT_EQ(text.trim().toUpper(), String(L"HELLO, WORLD"));
    EXPECT_EQ(String(L"\u00c4\u00d6").toLower(), String(L"\u00e4\u00f6"));
    EXPECT_EQ(String(L"abcdef").substring(2, 4), String(L"cd"));
    EXPECT_EQ(String(L"abcdef").substring(4), String(L"ef"));
    EXPECT_EQ(String(L"abc").substring(5, 9), String::empty()) << "positions are clamped";
    EXPECT_EQ(String(L"abc").substring(-3, 2), String(L"ab"));
    EXPECT_EQ(String("ab") + String(L"cd") + utf8("\xC3\xA9"), String(L"abcd\u00e9"));
    EXPECT_EQ(String(L"a,b,,c").replace(L",", L"; "), String(L"a; b; ; c"));
    EXPECT_EQ(String(L"aaa").replace(L"aa", L"b"), String(L"ba"));
    EXPECT_EQ(String(L"abc").replace(L"", L"x"), String(L"abc"));

    const auto pieces = String(L"a,,b,").split(L",");
    ASSERT_EQ(pieces.size(), 4u);
    EXPECT_EQ(pieces[0], String(L"a"));
    EXPECT_TRUE(pieces[1].isEmpty());
    EXPECT_EQ(pieces[2], String(L"b"));
    EXPECT_TRUE(pieces[3].isEmpty());
    EXPECT_EQ(String(L"abc").split(L"").size(), 1u);
}

TEST(String, CharacterAccessIsChecked) {
    const String text(L"ab");
    EXPECT_EQ(text.charAt(1), U'b');
    EXPECT_THROW(text.charAt(2), CException);
    EXPECT_THROW(text.charAt(-1), CException);
    EXPECT_THROW(String().charAt(0), CException);
}

TEST(String, NumbersParseOrRaise) {
    EXPECT_EQ(String(L" 42 ").toInt32(), 42);
    EXPECT_EQ(String(L"-2147483648").toInt32(), INT32_MIN);
    EXPECT_EQ(String(L"+7").toInt64(), 7);
    EXPECT_EQ(String(L"9223372036854775807").toInt64(), INT64_MAX);
    EXPECT_EQ(String(L"18446744073709551615").toUInt64(), UINT64_MAX);
    EXPECT_DOUBLE_EQ(String(L"-2.5e3").toDouble(), -2500.0);
    EXPECT_DOUBLE_EQ(String(L".5").toDouble(), 0.5);

    for (const wchar_t* bad : {L"", L"  ", L"12a", L"2147483648", L"--1", L"+-1", L"1 2", L"\u0661"}) {
        try {
            String(bad).toInt32();
            ADD_FAILURE() << "accepted an invalid integer";
        } catch (const CParseError& error) {
            EXPECT_EQ(error.getMessage(), String(L"Error parsing integer."));
        }
    }
    EXPECT_THROW(String(L"-1").toUInt64(), CParseError);
    try {
        String(L"1.2.3").toDouble();
        ADD_FAILURE() << "accepted an invalid floating point value";
    } catch (const CParseError& error) {
        EXPECT_EQ(error.getMessage(), String(L"Error parsing floating point value."));
    }
}

TEST(String, RawDataIsOnlyHandedOutInItsOwnWidth) {
    EXPECT_STREQ(String(L"wide").toCP().c_str(), "wide");
    EXPECT_STREQ(String("narrow").toWide().wc_str(), L"narrow");
    EXPECT_THROW(String(L"wide").c_str(), CException);
    EXPECT_THROW(String("narrow").wc_str(), CException);
    EXPECT_EQ(String(L"x\u00e9").toStdString(), "x\xC3\xA9");
    EXPECT_EQ(String::fromUTF8("x\xC3\xA9").toStdWString(), L"x\u00e9");
}
