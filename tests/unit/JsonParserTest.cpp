#include <zuno/CError.h>
#include <zuno/CJsonParser.h>
#include <zuno/CJsonPrinter.h>
#include <zuno/CStringInStream.h>
#include <zuno/CVariantArray.h>
#include <zuno/CVariantMap.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

using namespace zuno;

namespace {

String wide(const char* utf8) { return String::fromUTF8ToWide(utf8); }

P<IVariant> parse(const char* utf8) { return CJsonParser::parse(wide(utf8)); }

// The only element of a one-element array text.
P<IVariant> element(const std::string& value) {
    const P<IVariant> root = parse(("[" + value + "]").c_str());
    EXPECT_EQ(root->asArray().getCount(), 1) << value;
    return root->asArray().getAt(0);
}

std::string compact(const P<IVariant>& variant) { return CJsonPrinter().print(*variant).toStdString(); }

// The message of the CJsonParserError that parsing `utf8` raises.
std::string parseError(const std::string& utf8) {
    try {
        CJsonParser::parse(wide(utf8.c_str()));
    } catch (const CJsonParserError& error) {
        EXPECT_EQ(error.getErrorName(), String(L"JSONParser Error"));
        return error.getMessage().toStdString();
    }
    return "(accepted)";
}

// Hands out its bytes in windows of a fixed size, at odd addresses when asked: the parser
// must read the same text however the stream cuts it.
class CChoppyStream : public CObject, public IPeekableInStream {
public:
    CChoppyStream(const String& text, int32_t window, bool misaligned) : m_window(window) {
        const std::u16string units = toUnits(text);
        m_bytes.assign(misaligned ? 1 : 0, '\0');
        m_offset = int32_t(m_bytes.size());
        m_bytes.append(reinterpret_cast<const char*>(units.data()), units.size() * 2);
    }
    int32_t read(void* buffer, int32_t size) override {
        const int32_t count = peek(buffer, size);
        m_offset += count;
        return count;
    }
    int32_t peek(void* buffer, int32_t size) override {
        const int32_t count = std::min(size, int32_t(m_bytes.size()) - m_offset);
        std::memcpy(buffer, m_bytes.data() + m_offset, size_t(count));
        return count;
    }
    const void* peekBuffered(int32_t& size) override {
        size = std::min(m_window, int32_t(m_bytes.size()) - m_offset);
        return m_bytes.data() + m_offset;
    }
    int32_t skip(int32_t size) override {
        const int32_t count = std::min(size, int32_t(m_bytes.size()) - m_offset);
        m_offset += count;
        return count;
    }

private:
    static std::u16string toUnits(const String& text) {
        std::u16string units;
        for (char32_t c : text.getChars()) {
            if (c < 0x10000) {
                units.push_back(char16_t(c));
            } else {
                units.push_back(char16_t(0xD800 + ((c - 0x10000) >> 10)));
                units.push_back(char16_t(0xDC00 + ((c - 0x10000) & 0x3FF)));
            }
        }
        return units;
    }

    std::string m_bytes;
    int32_t m_offset = 0;
    int32_t m_window;
};

} // namespace

TEST(JsonParser, ParsesObjectsArraysAndScalars) {
    const P<IVariant> root = parse(" {\"a\": [1, -2.5, \"x\", true, false, null, {}, []],\n\t\"b\" :{\"c\":\"d\"}\r\n} ");
    ASSERT_TRUE(root && root->isMap());
    EXPECT_EQ(compact(root), "{\"a\":[1,-2.5,\"x\",true,false,null,{},[]],\"b\":{\"c\":\"d\"}}");
    const CVariantArray& a = root->asMap().get(String("a"))->asArray();
    EXPECT_TRUE(a.getAt(0)->isInt64());
    EXPECT_TRUE(a.getAt(1)->isDouble());
    EXPECT_TRUE(a.getAt(3)->isBoolean());
    EXPECT_TRUE(a.getAt(5)->isNull());
}

TEST(JsonParser, EmptyTextGivesNoTreeAndLeadingTextIsSkipped) {
    EXPECT_EQ(CJsonParser::parse(String::empty()), nullptr);
    EXPECT_EQ(CJsonParser::parse(String()), nullptr);
    const P<IVariant> root = parse("abc{\"k\":1}");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->asMap().get(String("k"))->getInt64(), 1);
    EXPECT_EQ(compact(parse("x = [1] and more")), "[1]");
    EXPECT_EQ(parseError("abc"), "could not parse Json String, first element must be an object or an array");
    EXPECT_EQ(parseError("  "), "could not parse Json String, first element must be an object or an array");
}

TEST(JsonParser, NothingBehindTheRootIsRead) {
    auto stream = make<CStringInStream>(String(L"[1] tail"));
    EXPECT_EQ(compact(CJsonParser(stream).parseDocument()), "[1]");
    char16_t rest[5] = {};
    EXPECT_EQ(stream->read(rest, sizeof rest), 10);
    EXPECT_EQ(std::u16string(rest, 5), u" tail");
}

TEST(JsonParser, NumbersFollowTheDigitByDigitRules) {
    struct Case {
        const char* text;
        bool isDouble;
        double value;
    };
    const Case cases[] = {
        {"0", false, 0},
        {"-0", false, 0},
        {"42", false, 42},
        {"-", false, 0},               // a minus sign alone is 0
        {"-.5", true, -0.5},
        {"1.000001", false, 1},        // a fraction below 0.00001 is dropped
        {"1.00001", true, 1.00001},
        {"1.0", false, 1},
        {"1e1", false, 10},            // an exponent of 1 keeps an integer
        {"5e-1", false, 0},            // ... truncated
        {"1e2", true, 100},
        {"5E-2", true, 0.05},
        {"1e-+5", true, 0.00001},
        {"1e+2", true, 100},
        {"1.5e1", true, 15},
        {"0.5", true, 0.5},
        {"1e400", true, std::numeric_limits<double>::infinity()},
        {"1e-400", true, 0},
        {"1e999999999999", true, std::numeric_limits<double>::infinity()},
        {"9223372036854775808", true, 9223372036854775808.0},
    };
    for (const Case& c : cases) {
        const P<IVariant> number = element(c.text);
        EXPECT_EQ(number->isDouble(), c.isDouble) << c.text;
        EXPECT_DOUBLE_EQ(number->getDouble(), c.value) << c.text;
    }
    const P<IVariant> huge = element("123456789012345678901234567890");
    EXPECT_TRUE(huge->isDouble()) << "an integer beyond 64 bits becomes a double";
    EXPECT_NEAR(huge->getDouble() / 1.2345678901234568e29, 1.0, 1e-15);
    EXPECT_EQ(element("9223372036854775807")->getInt64(), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(element("-9223372036854775808")->getInt64(), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(element("12345678901234567")->getInt64(), 12345678901234567) << "integers are exact";
    EXPECT_EQ(compact(parse("[-1,2]")), "[-1,2]");

    EXPECT_EQ(parseError("[1.]"), "not a number value");
    EXPECT_EQ(parseError("[1.e5]"), "not a number value");
    EXPECT_EQ(parseError("[1e]"), "not a number value");
    EXPECT_EQ(parseError("[1e-x]"), "not a number value");
    EXPECT_EQ(parseError("[1."), "unexspected end of stream");
    EXPECT_EQ(parseError("[.5]"), "unknown object for parse value");
    EXPECT_EQ(parseError("[+1]"), "unknown object for parse value");
    EXPECT_EQ(parseError("[01]"), "Expected char ']' not found at postion 2 - found '1'");
    EXPECT_EQ(parseError("[-x]"), "Expected char ']' not found at postion 2 - found 'x'");
}

TEST(JsonParser, StringsAndEscapes) {
    EXPECT_EQ(element("\"\\\" \\\\ \\/ \\b \\f \\n \\r \\t\"")->getString(), String(L"\" \\ / \b \f \n \r \t"));
    EXPECT_EQ(element("\"\\u00e9\\U00E9\"")->getString(), String(L"\u00e9\u00e9"));
    EXPECT_EQ(element("\"caf\xc3\xa9 \xf0\x9f\x98\x80\"")->getString(), wide("caf\xc3\xa9 \xf0\x9f\x98\x80"));
    EXPECT_EQ(element("\"\\ud83d\\ude00\"")->getString(), String::fromChar(U'\U0001F600'))
        << "an escaped surrogate pair makes one character";
    const String lone = element("\"\\ud800x\"")->getString();
    EXPECT_EQ(lone.length(), 2) << "a lone surrogate half stays one code unit";
    EXPECT_EQ(lone.wc_str()[0], wchar_t(0xD800));
    EXPECT_EQ(element("\"tab\there\x01\"")->getString(), String(L"tab\there\x01")) << "control characters are taken";
    EXPECT_EQ(element("\"\"")->getString(), String::empty());

    EXPECT_EQ(parseError("[\"\\x\"]"), "unknown char in excaped string: x");
    EXPECT_EQ(parseError("[\"\\u12\"]"), "could not parse unicode escaped string");
    EXPECT_EQ(parseError("[\"\\u12"), "stream size to small for reading unicode char");
    EXPECT_EQ(parseError("[\"\\u12G4\"]"), "could not parse unicode escaped string");
    EXPECT_EQ(parseError("[\"open"), "unexspected end of stream");
    EXPECT_EQ(parseError("[\"open\\"), "unexspected end of stream");
}

TEST(JsonParser, BooleansIgnoreCaseButTheLastLetterOfFalseAndNullIsLowerCase) {
    EXPECT_EQ(compact(parse("[true,TRUE,True,false,FALSe,fAlse]")), "[true,true,true,false,false,false]");
    EXPECT_EQ(parseError("[FALSE]"), "could not parse boolean value");
    EXPECT_EQ(parseError("[trux]"), "could not parse boolean value");
    EXPECT_EQ(parseError("[fals]"), "could not parse boolean value");
    EXPECT_EQ(parseError("[tr"), "unexspected end of stream");
    EXPECT_EQ(compact(parse("[null]")), "[null]");
    EXPECT_EQ(parseError("[Null]"), "Expected char 'n' not found at postion 1 - found 'N'");
    EXPECT_EQ(parseError("[nULL]"), "Expected char 'u' not found at postion 2 - found 'U'");
    EXPECT_EQ(parseError("[nul"), "unexspected end of stream");
}

TEST(JsonParser, StructureErrors) {
    struct Case {
        const char* text;
        const char* message;
    };
    const Case cases[] = {
        {"[1,]", "unknown object for parse value"},
        {"[,1]", "unknown object for parse value"},
        {"{\"a\":1,}", "could not parse key"},
        {"{a:1}", "could not parse key"},
        {"{\"a\" 1}", "Expected char ':' not found at postion 5 - found '1'"},
        {"{\"a\":}", "unknown object for parse value"},
        {"[1 2]", "Expected char ']' not found at postion 3 - found '2'"},
        {"{\"a\":1]", "Expected char '}' not found at postion 6 - found ']'"},
        {"[1", "end of stream found while advancing ignored chars"},
        {"[1,", "end of stream found while advancing ignored chars"},
        {"{", "end of stream found while advancing ignored chars"},
        {"[\f1]", "unknown object for parse value"},  // only tab, LF, CR and blank are white space
        {"[1]", nullptr},
    };
    for (const Case& c : cases) EXPECT_EQ(parseError(c.text), c.message ? c.message : "(accepted)") << c.text;
}

TEST(JsonParser, RepeatedKeysKeepTheFirstPlaceAndTheLastValue) {
    EXPECT_EQ(compact(parse("{\"a\":1,\"b\":2,\"a\":3}")), "{\"a\":3,\"b\":2}");
}

TEST(JsonParser, NestingIsLimited) {
    const int limit = CJsonParser::MaxNesting;
    const std::string deepest = std::string(size_t(limit), '[') + std::string(size_t(limit), ']');
    EXPECT_TRUE(parse(deepest.c_str()));
    const std::string tooDeep = "{\"a\":" + std::string(size_t(limit), '[');
    EXPECT_EQ(parseError(tooDeep), "objects and arrays nested deeper than 512 levels");
    EXPECT_EQ(parseError(std::string(100000, '[')), "objects and arrays nested deeper than 512 levels");
}

TEST(JsonParser, ReadsTheSameHoweverTheStreamCutsTheText) {
    const String text = wide("x{\"key\":[\"caf\xc3\xa9 \xf0\x9f\x98\x80\",\"\\u0041\\\"\",-12.5e1,true,null]}");
    const std::string expected = compact(CJsonParser::parse(text));
    EXPECT_EQ(expected, "{\"key\":[\"caf\xc3\xa9 \xf0\x9f\x98\x80\",\"A\\\"\",-125,true,null]}");
    for (int32_t window : {1, 2, 3, 5, 64}) {
        for (bool misaligned : {false, true}) {
            CJsonParser parser(make<CChoppyStream>(text, window, misaligned));
            EXPECT_EQ(compact(parser.parseDocument()), expected) << window << (misaligned ? " misaligned" : "");
        }
    }
}
