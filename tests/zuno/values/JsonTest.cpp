#include <zuno/CError.h>
#include <zuno/CJsonParser.h>
#include <zuno/CJsonPrinter.h>
#include <zuno/CObjectError.h>
#include <zuno/CStringInStream.h>
#include <zuno/CUTF8InStream.h>
#include <zuno/CVariantArray.h>
#include <zuno/CVariantBoolean.h>
#include <zuno/CVariantDouble.h>
#include <zuno/CVariantInt32.h>
#include <zuno/CVariantInt64.h>
#include <zuno/CVariantMap.h>
#include <zuno/CVariantNull.h>
#include <zuno/CVariantString.h>
#include <zuno/CVariantUInt64.h>

#include <sharedData.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace zuno;

namespace {

P<IVariant> parse(const std::string& utf8) { return CJsonParser::parse(String::fromUTF8ToWide(utf8)); }

std::string print(const P<IVariant>& variant, bool pretty = false) {
    return CJsonPrinter(pretty).print(*variant).toStdString();
}

P<CVariantArray> arrayOf(std::initializer_list<P<IVariant>> values) {
    return make<CVariantArray>(std::vector<P<IVariant>>(values));
}

// The only element of a one-element array text.
P<IVariant> element(const std::string& value) {
    const P<IVariant> root = parse("[" + value + "]");
    EXPECT_EQ(root->asArray().getCount(), 1) << value;
    return root->asArray().getAt(0);
}

// The message of the CJsonParserError that parsing `utf8` raises.
std::string parseError(const std::string& utf8) {
    try {
        parse(utf8);
    } catch (const CJsonParserError& error) {
        EXPECT_EQ(error.getErrorName(), String(L"JSONParser Error"));
        return error.getMessage().toStdString();
    }
    return "(accepted)";
}

// Shows the parser at most `window` bytes of the text at a time, copied to an odd address
// when asked: the parser must read the same text however the stream cuts it.
class CChoppyStream : public CStringInStream {
public:
    CChoppyStream(const String& text, int32_t window, bool misaligned)
        : CStringInStream(text), m_window(window), m_misaligned(misaligned) {}
    const void* peekBuffered(int32_t& size) override {
        const char* bytes = static_cast<const char*>(CStringInStream::peekBuffered(size));
        size = std::min(size, m_window);
        m_copy.assign(m_misaligned ? 1 : 0, '\0');
        m_copy.append(bytes, size_t(size));
        return m_copy.data() + (m_misaligned ? 1 : 0);
    }

private:
    int32_t m_window;
    bool m_misaligned;
    std::string m_copy;
};

// What the parser makes of a text: "accept" and the compact tree, or the message of its
// error.
template <class Parse>
std::string answerFor(Parse parse) {
    try {
        const P<IVariant> root = parse();
        return root ? "accept " + print(root) : "accept";
    } catch (const CJsonParserError& error) {
        return error.getMessage().toStdString();
    }
}

// A variant that claims a kind without being of that kind's class.
class CImpostorVariant : public CObject, public IVariant {
public:
    explicit CImpostorVariant(Kind kind) : m_kind(kind) {}
    Kind getKind() const override { return m_kind; }

private:
    Kind m_kind;
};

P<IVariant> integer(int64_t value) { return make<CVariantInt64>(value); }

String key(int i) { return String::fromUTF8("key" + std::to_string(i)); }

std::string readAll(IInStream& stream, int32_t piece) {
    std::string bytes;
    std::string buffer(size_t(piece), '\0');
    for (int32_t count; (count = stream.read(&buffer[0], piece)) > 0;) bytes.append(buffer, 0, size_t(count));
    return bytes;
}

// The double a variant holds, bit for bit (getDouble() would also accept integers).
template <class T>
const T& variantValue(const IVariant& variant) {
    return dynamic_cast<const CVariant<T>&>(variant).getValue();
}

} // namespace

TEST(Variant, EachClassHasItsKindAndValue) {
    const P<IVariant> variants[] = {make<CVariantNull>(), make<CVariantBoolean>(true), make<CVariantInt32>(-5),
                                    make<CVariantInt64>(std::numeric_limits<int64_t>::min()),
                                    make<CVariantUInt64>(std::numeric_limits<uint64_t>::max()),
                                    make<CVariantDouble>(0.25), make<CVariantString>(String(L"text")),
                                    make<CVariantArray>(), make<CVariantMap>()};
    for (int kind = 0; kind <= int(IVariant::Kind::Map); ++kind) {
        EXPECT_EQ(int(variants[kind]->getKind()), kind);
        EXPECT_EQ(variants[kind]->isNumber(), kind >= int(IVariant::Kind::Int32) && kind <= int(IVariant::Kind::Double));
    }
    EXPECT_EQ(print(make<CVariantArray>(std::vector<P<IVariant>>(std::begin(variants), std::end(variants)))),
              "[null,true,-5,-9223372036854775808,18446744073709551615,0.25,\"text\",[],{}]");
    // Integers convert to each other and to double while the value fits.
    EXPECT_EQ(variants[2]->getInt64(), -5);
    EXPECT_DOUBLE_EQ(variants[2]->getDouble(), -5.0);
    EXPECT_EQ(make<CVariantUInt64>(7)->getInt64(), 7);
    EXPECT_EQ(variants[4]->getUInt64(), std::numeric_limits<uint64_t>::max());
    EXPECT_THROW(variants[4]->getInt64(), CCastError);
    EXPECT_THROW(make<CVariantInt64>(-1)->getUInt64(), CCastError);
    EXPECT_THROW(make<CVariantDouble>(1.0)->getInt64(), CCastError);
    EXPECT_THROW(variants[8]->asArray(), CCastError);
}

TEST(Variant, ImpostorsAreCastErrorsAndUnknownKindsPrintAsNothing) {
    EXPECT_THROW(make<CImpostorVariant>(IVariant::Kind::Map)->asMap(), CCastError);
    EXPECT_THROW(make<CImpostorVariant>(IVariant::Kind::Int32)->getInt64(), CCastError);
    for (int kind = 0; kind <= int(IVariant::Kind::Map); ++kind) {
        EXPECT_THROW(print(arrayOf({make<CImpostorVariant>(IVariant::Kind(kind))})), CCastError) << kind;
    }
    EXPECT_EQ(print(arrayOf({make<CImpostorVariant>(IVariant::Kind(99)), make<CVariantNull>()})), "[,null]");
}

TEST(Variant, ArraysKeepOrderAndRejectBadIndexesAndNulls) {
    P<CVariantArray> array = arrayOf({integer(1), integer(3)});
    array->insertAt(1, integer(2));
    array->insertAt(3, integer(4));
    array->setAt(0, integer(0));
    EXPECT_EQ(print(array), "[0,2,3,4]");
    array->removeAt(3);
    EXPECT_EQ(print(array), "[0,2,3]");
    EXPECT_THROW(array->getAt(3), CInvalidArgError);
    EXPECT_THROW(array->getAt(-1), CInvalidArgError);
    EXPECT_THROW(array->insertAt(4, integer(0)), CInvalidArgError);
    EXPECT_THROW(array->add(nullptr), CInvalidArgError);
}

TEST(Variant, MapsKeepInsertionOrderAndReplaceRepeatedKeysInPlace) {
    P<CVariantMap> map = make<CVariantMap>();
    map->set(String("b"), integer(1));
    map->set(String(L"a"), integer(2));
    map->set(String::fromUTF8("b"), integer(3));  // a key in another encoding is the same key
    EXPECT_EQ(print(map), "{\"b\":3,\"a\":2}");
    EXPECT_EQ(map->get(String("missing")), nullptr);
    EXPECT_FALSE(map->contains(String("B")));
    EXPECT_TRUE(map->remove(String("b")));
    EXPECT_FALSE(map->remove(String("b")));
    EXPECT_EQ(print(map), "{\"a\":2}");

    EXPECT_THROW(map->set(String(), integer(1)), CInvalidArgError);
    EXPECT_THROW(map->set(String("k"), nullptr), CInvalidArgError);
    EXPECT_THROW(map->getKeyAt(1), CInvalidArgError);

    // Large maps find every key through their index, after replacements and removals.
    const int count = 1000;
    for (int i = 0; i < count; ++i) map->set(key(i), integer(i));
    for (int i = 0; i < count; i += 2) map->set(key(i), integer(-i));
    ASSERT_EQ(map->getCount(), count + 1);
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(map->indexOf(key(i)), i + 1);
        ASSERT_EQ(map->get(key(i).toUTF8())->getInt64(), i % 2 ? i : -i);
    }
    for (int i = 0; i < count; i += 3) ASSERT_TRUE(map->remove(key(i)));
    for (int i = 0; i < count; ++i) ASSERT_EQ(map->contains(key(i)), i % 3 != 0) << i;
    EXPECT_FALSE(map->contains(String("key")));
}

TEST(Variant, CopiesAreDeepForContainersAndShareScalars) {
    const P<IVariant> text = make<CVariantString>(String(L"shared"));
    const P<CVariantArray> list = arrayOf({text});
    P<CVariantMap> original = make<CVariantMap>();
    original->set(String("list"), list);
    const P<IVariant> copy = original->copy();
    list->add(integer(1));
    EXPECT_EQ(print(copy), "{\"list\":[\"shared\"]}");
    EXPECT_EQ(copy->asMap().get(String("list"))->asArray().getAt(0), text);
}

TEST(Variant, DeepTreesAreCopiedPrintedAndReleasedWithoutRecursion) {
    // Far deeper than any stack would take recursively.
    const int depth = 200000;
    P<CVariantArray> deep = make<CVariantArray>();
    P<CVariantMap> chain = make<CVariantMap>();
    CVariantArray* innerArray = deep.get();
    CVariantMap* innerMap = chain.get();
    for (int i = 1; i < depth; ++i) {
        P<CVariantArray> nextArray = make<CVariantArray>();
        innerArray->add(nextArray);
        innerArray = nextArray.get();
        P<CVariantMap> nextMap = make<CVariantMap>();
        innerMap->set(String("k"), nextMap);
        innerMap = nextMap.get();
    }
    P<IVariant> copy = deep->copy();
    deep.reset();
    EXPECT_EQ(print(copy), std::string(depth, '[') + std::string(depth, ']'));
    copy.reset();

    chain->set(String("k"), integer(0));  // releases the chain through a replaced value
    EXPECT_EQ(print(chain), "{\"k\":0}");
}

TEST(VariantDeathTest, TreesHeldByStaticObjectsAreReleasedAtExit) {
    // Static objects are destroyed after the thread's own objects, so whatever an earlier
    // release left on the thread is gone when the static tree is released.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            const auto nestedTree = [] {
                P<CVariantMap> tree = make<CVariantMap>();
                tree->set(String("list"), arrayOf({arrayOf({integer(1)}), arrayOf({integer(2)})}));
                return tree;
            };
            static P<IVariant> held;
            held = nestedTree();
            nestedTree().reset();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST(JsonParser, ReadsTheRootAndNothingAroundIt) {
    const char* const cases[][2] = {
        {" {\"a\": [1, -2.5, \"x\", true, false, null, {}, []],\n\t\"b\" :{\"c\":\"d\"}\r\n} ",
         "{\"a\":[1,-2.5,\"x\",true,false,null,{},[]],\"b\":{\"c\":\"d\"}}"},
        {"abc{\"k\":1}", "{\"k\":1}"},
        {"x = [1] and more", "[1]"},
        {"[true,TRUE,True,false,FALSe,fAlse]", "[true,true,true,false,false,false]"},
        {"{\"a\":1,\"b\":2,\"a\":3}", "{\"a\":3,\"b\":2}"},  // a repeated key keeps its place
    };
    for (const auto& c : cases) EXPECT_EQ(print(parse(c[0])), c[1]) << c[0];
    EXPECT_EQ(CJsonParser::parse(String::empty()), nullptr);
    EXPECT_EQ(CJsonParser::parse(String()), nullptr);

    auto stream = make<CStringInStream>(String(L"[1] tail"));
    EXPECT_EQ(print(CJsonParser(stream).parseDocument()), "[1]");
    char16_t rest[5] = {};
    EXPECT_EQ(stream->read(rest, sizeof rest), 10);
    EXPECT_EQ(std::u16string(rest, 5), u" tail");
}

TEST(JsonParser, NumbersFollowTheDigitByDigitRules) {
    struct Case { const char* text; bool isDouble; double value; };
    const Case cases[] = {
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
        {"1.5e1", true, 15},
        {"1e400", true, std::numeric_limits<double>::infinity()},
        {"1e-400", true, 0},
        {"1e999999999999", true, std::numeric_limits<double>::infinity()},
        {"9223372036854775808", true, 9223372036854775808.0},  // beyond 64 bits: a double
    };
    for (const Case& c : cases) {
        const P<IVariant> number = element(c.text);
        EXPECT_EQ(number->isDouble(), c.isDouble) << c.text;
        EXPECT_DOUBLE_EQ(number->getDouble(), c.value) << c.text;
    }
    EXPECT_NEAR(element("123456789012345678901234567890")->getDouble() / 1.2345678901234568e29, 1.0, 1e-15);
    EXPECT_EQ(element("9223372036854775807")->getInt64(), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(element("-9223372036854775808")->getInt64(), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(element("12345678901234567")->getInt64(), 12345678901234567) << "integers are exact";
}

// The value of a number with a fraction of many digits is bit for bit the digit-by-digit
// sum: integer part plus d / 10^k for each digit, the divisor multiplied by ten per place.
TEST(JsonParser, FractionsAreSummedDigitByDigit) {
    std::mt19937 random(5);
    for (int i = 0; i < 20000; ++i) {
        const int integer = int(random() % 1000);
        std::string digits;
        const int places = 1 + int(random() % 40);
        for (int k = 0; k < places; ++k) digits += char('0' + random() % 10);
        double fraction = 0, divisor = 1;
        for (const char d : digits) {
            divisor *= 10;
            fraction += (d - '0') / divisor;
        }
        if (fraction < 0.00001) continue;
        const double expected = -(integer + fraction);
        const double parsed = element("-" + std::to_string(integer) + "." + digits)->getDouble();
        ASSERT_EQ(std::memcmp(&parsed, &expected, sizeof parsed), 0) << integer << "." << digits;
    }
}

TEST(JsonParser, StringsKeepEscapedCodeUnitsAsTheyAre) {
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"\"\\\" \\\\ \\/ \\b \\f \\n \\r \\t\"", L"\" \\ / \b \f \n \r \t"},
        {"\"\\u00e9\\U00E9\"", L"\u00e9\u00e9"},
        {"\"caf\xc3\xa9 \xf0\x9f\x98\x80\"", L"caf\u00e9 \U0001F600"},
        {"\"\\ud83d\\ude00\"", L"\U0001F600"},  // an escaped surrogate pair makes one character
        {"\"\\ud800x\"", L"\xD800x"},           // a lone half stays one code unit
        {"\"tab\there\x01\"", L"tab\there\x01"},
        {"\"\"", L""},
    };
    for (const auto& c : cases) EXPECT_EQ(element(c.first)->getString().toStdWString(), c.second) << c.first;
}

TEST(JsonParser, LongStringsAreReadWhole) {
    std::string body;
    for (int i = 0; i < 20000; ++i) body += i % 1000 ? "ab" : "\xc3\xa9\\n";
    const std::string expected = [&] {
        std::string text = body;
        for (size_t at; (at = text.find("\\n")) != std::string::npos;) text.replace(at, 2, "\n");
        return text;
    }();
    for (const int copies : {1, 2}) {  // the second string reuses the parser's buffer
        std::string document = "[";
        for (int i = 0; i < copies; ++i) document += std::string(i ? "," : "") + '"' + body + '"';
        const P<IVariant> root = parse(document + "]");
        for (int i = 0; i < copies; ++i) EXPECT_TRUE(root->asArray().getAt(i)->getString().toStdString() == expected);
    }
}

TEST(JsonParser, EveryErrorHasItsMessage) {
    const char* const notRooted = "could not parse Json String, first element must be an object or an array";
    const char* const endOfStream = "unexspected end of stream";
    const char* const endInBlanks = "end of stream found while advancing ignored chars";
    const char* const cases[][2] = {
        {"abc", notRooted},
        {"[1.]", "not a number value"},
        {"[1e-x]", "not a number value"},
        {"[1.", endOfStream},
        {"[.5]", "unknown object for parse value"},
        {"[+1]", "unknown object for parse value"},
        {"[01]", "Expected char ']' not found at postion 2 - found '1'"},
        {"[-x]", "Expected char ']' not found at postion 2 - found 'x'"},
        {"[\"\\x\"]", "unknown char in excaped string: x"},
        {"[\"\\u12G4\"]", "could not parse unicode escaped string"},
        {"[\"\\u12", "stream size to small for reading unicode char"},
        {"[\"open", endOfStream},
        {"[\"open\\", endOfStream},
        {"[FALSE]", "could not parse boolean value"},  // the last letter of false is lower case
        {"[trux]", "could not parse boolean value"},
        {"[tr", endOfStream},
        {"[Null]", "Expected char 'n' not found at postion 1 - found 'N'"},
        {"[nul", endOfStream},
        {"[1,]", "unknown object for parse value"},
        {"{\"a\":1,}", "could not parse key"},
        {"{a:1}", "could not parse key"},
        {"{\"a\" 1}", "Expected char ':' not found at postion 5 - found '1'"},
        {"{\"a\":}", "unknown object for parse value"},
        {"[1 2]", "Expected char ']' not found at postion 3 - found '2'"},
        {"{\"a\":1]", "Expected char '}' not found at postion 6 - found ']'"},
        {"[1", endInBlanks},
        {"{", endInBlanks},
        {"[\f1]", "unknown object for parse value"},  // only tab, LF, CR and blank are white space
        // Positions count UTF-16 code units, whatever the text is stored as.
        {"[\"\xf0\x9f\x98\x80\xc3\xa9\" x]", "Expected char ']' not found at postion 7 - found 'x'"},
        {"[1 \xf0\x9f\x98\x80]", "Expected char ']' not found at postion 3 - found '\xf0\x9f\x98\x80'"},
        {"[tr\xc3\xa9", endOfStream},
        {"[\"\\u12\xc3\xa9", "stream size to small for reading unicode char"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(parseError(c[0]), c[1]) << c[0];
        const std::string bytes = c[0];
        EXPECT_EQ(answerFor([&] { return CJsonParser::parseUTF8(bytes.data(), bytes.size()); }), c[1]) << c[0];
        EXPECT_EQ(answerFor([&] { return CJsonParser(make<CUTF8InStream>(bytes)).parseDocument(); }), c[1]) << c[0];
    }
}

TEST(JsonParser, NestingIsLimited) {
    const size_t limit = size_t(CJsonParser::MaxNesting);
    EXPECT_TRUE(parse(std::string(limit, '[') + std::string(limit, ']')));
    EXPECT_EQ(parseError("{\"a\":" + std::string(limit, '[')), "objects and arrays nested deeper than 512 levels");
    EXPECT_EQ(parseError(std::string(100000, '[')), "objects and arrays nested deeper than 512 levels");
}

TEST(JsonParser, ReadsTheSameHoweverTheStreamCutsTheText) {
    const String text = String::fromUTF8ToWide("x{\"key\":[\"caf\xc3\xa9 \xf0\x9f\x98\x80\",\"\\u0041\\\"\",-12.5e1,true,null]}");
    const std::string expected = "{\"key\":[\"caf\xc3\xa9 \xf0\x9f\x98\x80\",\"A\\\"\",-125,true,null]}";
    for (int32_t window : {1, 2, 3, 5, 64}) {
        for (bool misaligned : {false, true}) {
            CJsonParser parser(make<CChoppyStream>(text, window, misaligned));
            EXPECT_EQ(print(parser.parseDocument()), expected) << window << (misaligned ? " misaligned" : "");
        }
    }
}

TEST(JsonPrinter, PrettyTextIndentsWithTabsAndParsesBack) {
    for (const char* pretty :
         {"{\n\t\"a\": [\n\t\t{\n\n\t\t},\n\t\t[\n\n\t\t],\n\t\tnull\n\t],\n\t\"b\": false\n}", "[\n\n]", "{\n\n}"}) {
        EXPECT_EQ(print(parse(pretty), true), pretty);
    }
}

TEST(JsonPrinter, StringsEscapeOnlySevenCharacters) {
    P<CVariantMap> map = make<CVariantMap>();
    map->set(String(L"k\"ey"), make<CVariantString>(String(L"\\ \" \b \f \n \r \t / \x01 \x1f \u00e9 \u20ac")));
    EXPECT_EQ(CJsonPrinter().print(*map), String(L"{\"k\\\"ey\":\"\\\\ \\\" \\b \\f \\n \\r \\t / \x01 \x1f \u00e9 \u20ac\"}"));
    EXPECT_EQ(print(arrayOf({make<CVariantString>(String::fromUTF8("\xf0\x9f\x98\x80")), make<CVariantString>(String("a\"b"))})),
              "[\"\xf0\x9f\x98\x80\",\"a\\\"b\"]");
}

TEST(JsonPrinter, DoublesPrintAsPercentGOnEveryPlatform) {
    EXPECT_EQ(print(arrayOf({make<CVariantDouble>(1e8), make<CVariantDouble>(0.1), make<CVariantDouble>(-2.5e-7),
                              make<CVariantDouble>(123456789.0), make<CVariantDouble>(100)})),
              "[1e+08,0.1,-2.5e-07,1.23457e+08,100]");

    // The same text as the C library's "%g" for every kind of value: random bit patterns,
    // short decimals, decimal ties and the edges of the fixed and exponent forms.
    std::vector<double> values = {0.0, -0.0, 5e-324, -2.2250738585072014e-308, 1.7976931348623157e308, 1e-300,
                                  1e300, 0.0001, 0.00009999995, 0.000099999949, 999999.5, 999999.4999, 9999995,
                                  1000005, 0.1234565, 1234565, 2.5, 0.5, 100000, 999999, 1e-5, 123456789012.0};
    std::mt19937_64 random(7);
    std::uniform_int_distribution<int> digits(0, 9999999);
    std::uniform_int_distribution<int> power(-30, 30);
    for (int i = 0; i < 100000; ++i) {
        const uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value)) values.push_back(value);
        const int mantissa = i % 2 ? digits(random) : digits(random) / 10 * 10 + 5;  // half of them decimal ties
        values.push_back(mantissa * std::pow(10.0, power(random)));
    }
    for (const double value : values) {
        char expected[40];
        std::snprintf(expected, sizeof expected, "[%g]", value);
        ASSERT_EQ(print(arrayOf({make<CVariantDouble>(value)})), expected) << std::hexfloat << value;
    }
}

TEST(JsonExactMode, NumbersReadInFullOrAsCorrectlyRoundedDoubles) {
    struct Case { const char* text; IVariant::Kind kind; const char* printed; };
    using K = IVariant::Kind;
    const Case cases[] = {
        {"9223372036854775807", K::Int64, "9223372036854775807"},
        {"-9223372036854775808", K::Int64, "-9223372036854775808"},
        {"9223372036854775808", K::UInt64, "9223372036854775808"},
        {"18446744073709551615", K::UInt64, "18446744073709551615"},
        {"18446744073709551616", K::Double, "18446744073709551616.0"},
        {"-9223372036854775809", K::Double, "-9223372036854775808.0"},
        {"-0", K::Int64, "0"},
        {"-", K::Int64, "0"},
        {"1.000001", K::Double, "1.000001"},
        {"1.0", K::Double, "1.0"},
        {"5e-1", K::Double, "0.5"},
        {"1e1", K::Double, "10.0"},
        {"-.5", K::Double, "-0.5"},
        {"1e-+5", K::Double, "1e-05"},
        {"0.1", K::Double, "0.1"},
        {"1e-300", K::Double, "1e-300"},
        {"-0.0", K::Double, "-0.0"},
        {"2.2250738585072011e-308", K::Double, "2.225073858507201e-308"},
        {"0.30000000000000004", K::Double, "0.30000000000000004"},
        {"123456789012345678901234567890", K::Double, "1.2345678901234568e+29"},
        {"1e400", K::Double, "null"},
        {"-1e400", K::Double, "null"},
        {"1e999999999999", K::Double, "null"},
        {"1e-400", K::Double, "0.0"},
        {"-0.0000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
         "00000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
         "00000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
         "00000000000000000000000000000000000000000001", K::Double, "-0.0"},
        {"100000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
         "00000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
         "00000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
         "000000000000000000000000000000000000000000000000000e-1", K::Double, "null"},
    };
    for (const Case& c : cases) {
        const P<IVariant> root = CJsonParser::parse(String::fromUTF8ToWide(std::string("[") + c.text + "]"), JsonMode::Exact);
        const P<IVariant> number = root->asArray().getAt(0);
        EXPECT_EQ(number->getKind(), c.kind) << c.text;
        EXPECT_EQ(CJsonPrinter(false, JsonMode::Exact).print(*root).toStdString(), std::string("[") + c.printed + "]")
            << c.text;
    }
}

TEST(JsonExactMode, EveryValueReadsBackAsTheSameKindAndValue) {
    std::vector<P<IVariant>> values = {
        make<CVariantInt64>(std::numeric_limits<int64_t>::min()), make<CVariantInt64>(std::numeric_limits<int64_t>::max()),
        make<CVariantUInt64>(std::numeric_limits<uint64_t>::max()), make<CVariantDouble>(1.000001),
        make<CVariantDouble>(100), make<CVariantDouble>(5e-324), make<CVariantDouble>(1.7976931348623157e308),
        make<CVariantDouble>(-0.0), make<CVariantDouble>(1e21), make<CVariantDouble>(1e-7)};
    std::wstring controls;
    for (wchar_t c = 0; c < 0x20; ++c) controls += c;
    controls += L"\"\\/\x7f\u00e9\U0001F600";
    values.push_back(make<CVariantString>(String(controls.c_str(), int32_t(controls.size()))));
    std::mt19937_64 random(11);
    for (int i = 0; i < 20000; ++i) {
        const uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value)) values.push_back(make<CVariantDouble>(value));
    }
    const P<IVariant> tree = make<CVariantArray>(values);
    for (const bool pretty : {false, true}) {
        const String text = CJsonPrinter(pretty, JsonMode::Exact).print(*tree);
        for (const wchar_t c : text.toStdWString()) ASSERT_FALSE(c < 0x20 && c != L'\n' && c != L'\t') << int(c);
        const P<IVariant> back = CJsonParser::parse(text, JsonMode::Exact);
        ASSERT_EQ(back->asArray().getCount(), int32_t(values.size()));
        for (size_t i = 0; i < values.size(); ++i) {
            const IVariant& original = *values[i];
            const IVariant& read = *back->asArray().getAt(int32_t(i));
            ASSERT_EQ(read.getKind(), original.getKind()) << i;
            if (original.isDouble()) {
                ASSERT_EQ(std::memcmp(&variantValue<double>(read), &variantValue<double>(original), sizeof(double)), 0)
                    << std::hexfloat << original.getDouble();
            } else if (original.isString()) {
                ASSERT_EQ(read.getString(), original.getString());
            } else if (original.isUInt64()) {
                ASSERT_EQ(read.getUInt64(), original.getUInt64());
            } else {
                ASSERT_EQ(read.getInt64(), original.getInt64());
            }
        }
    }
}

TEST(JsonExactMode, StringsEscapeControlCharactersAndLoneSurrogates) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"\x01\x1f\x7f", L"\"\\u0001\\u001F\x7f\""},
        {L"\b\f\n\r\t\"\\/", L"\"\\b\\f\\n\\r\\t\\\"\\\\/\""},
        {L"a\xD800z", L"\"a\\uD800z\""},
        {L"\U0001F600", L"\"\U0001F600\""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CJsonPrinter(false, JsonMode::Exact).print(*arrayOf({make<CVariantString>(String(c.first))})),
                  String((std::wstring(L"[") + c.second + L"]").c_str()));
    }
}

// Every file of the suite, in one process: each gives exactly our recorded answer, and none
// crashes, hangs or upsets the sanitizers.
TEST(JsonTestSuite, EveryFileGivesOurRecordedAnswer) {
    ZUNO_REQUIRE_SHARED_DATA(dataDir);
    const std::filesystem::path folder = std::filesystem::u8path(dataDir + "/JSONTestSuite/test_parsing");
    std::ifstream answers(ZUNO_JSON_SUITE_ANSWERS);
    size_t files = 0;
    for (std::string line; std::getline(answers, line);) {
        if (line.empty() || line[0] == '#') continue;
        const std::string name = line.substr(0, line.find(' '));
        std::ifstream in(folder / name, std::ios::binary);
        ASSERT_TRUE(in.is_open()) << name << " cannot be read";
        const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        // Through a wide String, a UTF-8 String, a stream and straight from the bytes: the
        // same answer every way.
        const std::string fromString = answerFor([&] { return CJsonParser::parse(String::fromUTF8ToWide(bytes)); });
        const std::string answer = fromString.compare(0, 6, "accept") == 0 ? "accept" : '"' + fromString + '"';
        EXPECT_EQ(answer, line.substr(name.size() + 1)) << name;
        EXPECT_EQ(answerFor([&] { return CJsonParser(make<CUTF8InStream>(bytes)).parseDocument(); }), fromString) << name;
        EXPECT_EQ(answerFor([&] { return CJsonParser::parseUTF8(bytes.data(), bytes.size()); }), fromString) << name;
        EXPECT_EQ(answerFor([&] { return CJsonParser::parse(String::fromUTF8(bytes)); }), fromString) << name;
        ++files;
    }
    const std::filesystem::directory_iterator listing(folder);
    EXPECT_EQ(files, size_t(std::distance(begin(listing), end(listing)))) << "files without a recorded answer";
}

// The stream gives the units the framework's text objects give, however it is read.
TEST(UTF8InStream, ReadsTheUnitsOfTheTextObjectsHoweverItIsRead) {
    // Long enough for several windows, with four-byte characters and ill-formed bytes that
    // fall on every offset of a window's end.
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        text += "ab\xc3\xa9\xf0\x9f\x98\x80";
        if (i % 7 == 0) text += "\xed\xa0\x80\xc3";  // a surrogate's encoding, a cut-off sequence
        if (i % 11 == 0) text += "\xf0\x9f";
    }
    CStringInStream reference(String::fromUTF8(text));
    const std::string expected = readAll(reference, 1 << 20);
    for (int32_t piece : {1, 3, 8, 1000, 1 << 20}) {
        CUTF8InStream stream(text);
        EXPECT_TRUE(readAll(stream, piece) == expected) << piece;
    }

    // A peek far beyond one window sees everything without consuming it.
    CUTF8InStream stream(text);
    std::string all(expected.size() + 10, '\0');
    ASSERT_EQ(stream.peek(&all[0], int32_t(all.size())), int32_t(expected.size()));
    EXPECT_TRUE(all.substr(0, expected.size()) == expected);

    // Windows and skips walk the same units, an odd byte at a time as well.
    std::string walked;
    for (int step = 0;; ++step) {
        int32_t size = 0;
        const char* window = static_cast<const char*>(stream.peekBuffered(size));
        if (size == 0) break;
        const int32_t take = std::min(size, step % 2 ? 3 : 5000);
        walked.append(window, size_t(take));
        ASSERT_EQ(stream.skip(take), take);
    }
    EXPECT_TRUE(walked == expected);
    EXPECT_EQ(stream.read(&all[0], 1), 0);
}
