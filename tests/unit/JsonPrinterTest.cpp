#include <zuno/CJsonParser.h>
#include <zuno/CJsonPrinter.h>
#include <zuno/CObjectError.h>
#include <zuno/CVariantArray.h>
#include <zuno/CVariantBoolean.h>
#include <zuno/CVariantDouble.h>
#include <zuno/CVariantInt32.h>
#include <zuno/CVariantInt64.h>
#include <zuno/CVariantMap.h>
#include <zuno/CVariantNull.h>
#include <zuno/CVariantString.h>
#include <zuno/CVariantUInt64.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace zuno;

namespace {

class CForeignVariant : public CObject, public IVariant {
public:
    explicit CForeignVariant(Kind kind) : m_kind(kind) {}
    Kind getKind() const override { return m_kind; }

private:
    Kind m_kind;
};

std::string print(const IVariant& variant, bool pretty = false) {
    return CJsonPrinter(pretty).print(variant).toStdString();
}

P<IVariant> parse(const char* utf8) { return CJsonParser::parse(String::fromUTF8ToWide(utf8)); }

P<CVariantArray> arrayOf(std::initializer_list<P<IVariant>> values) {
    P<CVariantArray> array = make<CVariantArray>();
    for (const P<IVariant>& value : values) array->add(value);
    return array;
}

} // namespace

TEST(JsonPrinter, CompactTextHasNoBlanks) {
    EXPECT_EQ(print(*arrayOf({make<CVariantInt32>(1), make<CVariantInt64>(2), make<CVariantUInt64>(3)})), "[1,2,3]");
    EXPECT_EQ(print(*parse("{ \"a\" : [ {}, [ ], null ], \"b\" : false }")), "{\"a\":[{},[],null],\"b\":false}");
    EXPECT_EQ(print(*arrayOf({make<CVariantInt32>(std::numeric_limits<int32_t>::min()),
                              make<CVariantInt64>(std::numeric_limits<int64_t>::min()),
                              make<CVariantUInt64>(std::numeric_limits<uint64_t>::max())})),
              "[-2147483648,-9223372036854775808,18446744073709551615]");
}

TEST(JsonPrinter, PrettyTextIndentsWithTabs) {
    EXPECT_EQ(print(*parse("{\"a\":1,\"b\":[true,null]}"), true), "{\n\t\"a\": 1,\n\t\"b\": [\n\t\ttrue,\n\t\tnull\n\t]\n}");
    EXPECT_EQ(print(*make<CVariantArray>(), true), "[\n\n]");
    EXPECT_EQ(print(*make<CVariantMap>(), true), "{\n\n}");
    EXPECT_EQ(print(*parse("{\"a\":[]}"), true), "{\n\t\"a\": [\n\n\t]\n}");
    EXPECT_EQ(print(*parse("[[1,2],3]"), true), "[\n\t[\n\t\t1,\n\t\t2\n\t],\n\t3\n]");
}

TEST(JsonPrinter, StringsEscapeOnlySevenCharacters) {
    const String text(L"\\ \" \b \f \n \r \t / \x01 \x1f \u00e9 \u20ac");
    P<CVariantMap> map = make<CVariantMap>();
    map->set(String(L"k\"ey"), make<CVariantString>(text));
    EXPECT_EQ(CJsonPrinter().print(*map), String(L"{\"k\\\"ey\":\"\\\\ \\\" \\b \\f \\n \\r \\t / \x01 \x1f \u00e9 \u20ac\"}"));
    EXPECT_EQ(print(*arrayOf({make<CVariantString>(String::fromUTF8("\xf0\x9f\x98\x80"))})), "[\"\xf0\x9f\x98\x80\"]");
    EXPECT_EQ(print(*arrayOf({make<CVariantString>(String("narrow"))})), "[\"narrow\"]");
}

TEST(JsonPrinter, DoublesPrintAsPercentG) {
    EXPECT_EQ(print(*arrayOf({make<CVariantDouble>(1e8), make<CVariantDouble>(0.1), make<CVariantDouble>(-2.5e-7),
                              make<CVariantDouble>(123456789.0), make<CVariantDouble>(100)})),
              "[1e+08,0.1,-2.5e-07,1.23457e+08,100]");

    // The same text as the C library's "%g" for every kind of value: random bit patterns,
    // short decimals, decimal ties and the edges of the fixed and exponent forms.
    std::vector<double> values = {0.0, -0.0, 5e-324, -2.2250738585072014e-308, 1.7976931348623157e308, 1e-300,
                                  1e300, 0.0001, 0.00009999995, 0.000099999949, 999999.5, 999999.4999, 9999995,
                                  1000005, 0.1234565, 1234565, 2.5, 0.5, 100000, 999999, 1e-5, 123456789012.0};
    std::mt19937_64 random(7);
    for (int i = 0; i < 100000; ++i) {
        const uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value)) values.push_back(value);
    }
    std::uniform_int_distribution<int> digits(0, 9999999);
    std::uniform_int_distribution<int> power(-30, 30);
    for (int i = 0; i < 100000; ++i) {
        const int mantissa = i % 2 ? digits(random) : digits(random) / 10 * 10 + 5;  // half of them decimal ties
        values.push_back(mantissa * std::pow(10.0, power(random)));
    }
    for (const double value : values) {
        char expected[40];
        std::snprintf(expected, sizeof expected, "[%g]", value);
        ASSERT_EQ(print(*arrayOf({make<CVariantDouble>(value)})), expected) << std::hexfloat << value;
    }
}

TEST(JsonPrinter, ForeignKindsPrintEmptyAndImpostorsAreCastErrors) {
    EXPECT_EQ(print(*arrayOf({make<CForeignVariant>(IVariant::Kind(99)), make<CVariantNull>()})), "[,null]");
    for (IVariant::Kind kind : {IVariant::Kind::Map, IVariant::Kind::Array, IVariant::Kind::String, IVariant::Kind::Int32,
                                IVariant::Kind::Int64, IVariant::Kind::UInt64, IVariant::Kind::Boolean,
                                IVariant::Kind::Double, IVariant::Kind::Null}) {
        EXPECT_THROW(print(*arrayOf({make<CForeignVariant>(kind)})), CCastError) << int(kind);
    }
}

TEST(JsonPrinter, PrintedTextParsesBackToTheSameTree) {
    const char* text = "{\"name\":\"caf\xc3\xa9\",\"list\":[1,-2,0.5,true,false,null,\"a\\\\b\\\"c\\n\"],\"empty\":{}}";
    const P<IVariant> tree = parse(text);
    EXPECT_EQ(print(*tree), text);
    EXPECT_EQ(print(*parse(print(*tree, true).c_str())), text);
}
