#include <zuno/CObjectError.h>
#include <zuno/CStringFormat.h>
#include <zuno/String.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

using namespace zuno;

namespace {

constexpr int64_t Int64Min = std::numeric_limits<int64_t>::min();
constexpr uint64_t UInt64Max = std::numeric_limits<uint64_t>::max();

} // namespace

TEST(StringFormat, IntegerFieldsAgreeWithPrintfWhereTheRulesMeet) {
    // No sign character, no zero flag together with a precision, the alternate form only
    // for x, X and o with a value other than zero and, for o, without a precision.
    const std::vector<int64_t> decimalValues = {0, 1, 42, 1000000, std::numeric_limits<int64_t>::max()};
    const std::vector<int64_t> bitValues = {0, 1, 8, 255, 0xdeadbeef, -1, Int64Min};
    int compared = 0;
    for (const char conversion : std::string("diuxXo"))
        for (const int64_t value : std::strchr("diu", conversion) ? decimalValues : bitValues)
            for (const std::string flags : {"", "-", "0", "-0", "#", "#0", "#-"})
                for (const std::string width : {"", "1", "8", "25"})
                    for (const std::string precision : {"", ".0", ".1", ".5", ".22"}) {
                        const bool alternate = flags[0] == '#';
                        if (alternate && (std::strchr("diu", conversion) || value == 0)) continue;
                        if (!precision.empty() && (flags.find('0') != std::string::npos || (alternate && conversion == 'o'))) continue;
                        const std::string field = "%" + flags + width + precision;
                        char expected[128];
                        std::snprintf(expected, sizeof expected, (field + "ll" + conversion + "|").c_str(), (long long)value);
                        CStringFormat formatted(String::fromUTF8(field + conversion + "|"));
                        EXPECT_EQ(formatted.doInt(value, conversion != 'u').getResult().toStdString(), expected)
                            << field << conversion << " with " << value;
                        ++compared;
                    }
    EXPECT_GT(compared, 1000);
}

// Floating-point fields print what the C library prints, whichever way they are formatted.
TEST(StringFormat, FloatingPointFieldsAgreeWithPrintf) {
    const double values[] = {0.0, -0.0, 1.0, -2.5, 0.125, 3.14159265358979, 1e-300, 5e-324, 1e22, 123456789.0,
                             9.9999995, 0.00001234, -1e100, 1.7976931348623157e308, 2.5, 0.5, 1e16, 7e-5};
    int compared = 0;
    for (const char conversion : std::string("eEfgG"))
        for (const double value : values)
            for (const std::string flags : {"", "-", "+", " ", "0", "-+", "+0", " 0"})
                for (const std::string width : {"", "3", "12", "40"})
                    for (const std::string precision : {"", ".0", ".1", ".3", ".17"}) {
                        const std::string field = "%" + flags + width + precision + conversion;
                        char expected[512];
                        std::snprintf(expected, sizeof expected, (field + "|").c_str(), value);
                        CStringFormat formatted(String::fromUTF8(field + "|"));
                        EXPECT_EQ(formatted.doDouble(value).getResult().toStdString(), expected) << field << " with " << value;
                        ++compared;
                    }
    EXPECT_GT(compared, 10000);
}

TEST(StringFormat, FieldsFollowTheirOwnRules) {
    auto format = [](const char* text) { return CStringFormat(String::fromUTF8(text)); };
    const std::pair<String, const wchar_t*> cases[] = {
        // Integers, where they differ from printf on purpose: the push decides the sign, the
        // sign is outside the width, zeros pad despite a precision, the prefix even for zero.
        {format("%d").doInt(Int64Min).getResult(), L"-9223372036854775808"},
        {format("%d").doInt(int64_t(UInt64Max), false).getResult(), L"18446744073709551615"},
        {format("%u").doInt(-5).getResult(), L"-5"},
        {format("%+d").doInt(5, false).getResult(), L"5"},
        {format("%5d|").doInt(-42).getResult(), L"   -42|"},
        {format("%05d").doInt(-42).getResult(), L"-00042"},
        {format("%+05d").doInt(42).getResult(), L"+00042"},
        {format("% d").doInt(5).getResult(), L" 5"},
        {format("%08.3d").doInt(5).getResult(), L"00000005"},
        {format("%#x").doInt(0).getResult(), L"0x0"},
        {format("%#.0x").doInt(0).getResult(), L"0x"},
        {format("%#o").doInt(0).getResult(), L"00"},
        {format("%#.4o").doInt(8).getResult(), L"00010"},
        {format("%I64d|%Id|%ld|%hd|%jd|%zd|%td|%Ld").doInt(0).doInt(1).doInt(2).doInt(3).doInt(4).doInt(5).doInt(6).doInt(7)
             .getResult(), L"0|1|2|3|4|5|6|7"},
        // Floating point as the C library prints it, with the same exponents on every platform.
        {format("%g").doDouble(1e8).getResult(), L"1e+08"},
        {format("%G").doDouble(1e-10).getResult(), L"1E-10"},
        {format("%E").doDouble(1e300).getResult(), L"1.000000E+300"},
        {format("%-10.2f|").doDouble(3.14159).getResult(), L"3.14      |"},
        {format("%+.1e").doDouble(123456.0).getResult(), L"+1.2e+05"},
        {format("%010.3f").doDouble(-2.5).getResult(), L"-00002.500"},
        {format("%#.0f").doDouble(3.0).getResult(), L"3."},
        {format("%Lf").doDouble(0.5).getResult(), L"0.500000"},
        {format("%5.1f").doInt(3).getResult(), L"  3.0"},
        {format("%g").doInt(int64_t(UInt64Max), false).getResult(), L"1.84467e+19"},
        // Widths and precisions from integer pushes; a negative width is none.
        {format("%*d|").doInt(5).doInt(42).getResult(), L"   42|"},
        {format("%*d|").doInt(-3).doInt(42).getResult(), L"42|"},
        {format("%.*d").doInt(3).doInt(5).getResult(), L"005"},
        {format("%*.*f").doInt(8).doInt(2).doDouble(3.14159).getResult(), L"    3.14"},
        {format("%*d").doChar(U'\x04').doChar(U'A').getResult(), L"  65"},  // characters count as integers there
        // Characters and strings: widths and precisions count characters; text ends at a NUL.
        {format("%3c|").doChar(U'x').getResult(), L"  x|"},
        {format("%-3C|").doChar(U'x').getResult(), L"x  |"},
        {format("%3c|").doChar(U'\u00e9').getResult(), L"  \u00e9|"},  // above 127 printed as text
        {format("%c").doChar(U'\U0001F600').getResult(), L"\U0001F600"},
        {format("%c%c").doInt(65).doInt(0x20AC).getResult(), L"A\u20ac"},
        {format("[%8s]").doString(String::fromUTF8("h\xc3\xa9llo")).getResult(), L"[   h\u00e9llo]"},
        {format("[%-8S]").doString(String(L"h\u00e9llo")).getResult(), L"[h\u00e9llo   ]"},
        {format("[%.2s]").doString(String(L"h\u00e9llo")).getResult(), L"[h\u00e9]"},
        {format("[%3s]").doString(String::fromChar(U'\U0001F600')).getResult(), L"[  \U0001F600]"},
        {format("[%s]").doString(String()).getResult(), L"[]"},
        {format("[%4s]").doString(String(L"a\0b", 3)).getResult(), L"[   a]"},
        // Literal text around the fields.
        {format("100%% sure, %%d").getResult(), L"100% sure, %d"},
        {CStringFormat(String(L"\u00e4%s\u00fc")).doString(String("-")).getResult(), L"\u00e4-\u00fc"},
        {CStringFormat(String()).getResult(), L""},
        {format("%-+ #0d").doInt(42).getResult(), L"+42"},  // five flags are accepted
    };
    for (const auto& c : cases) EXPECT_EQ(c.first.toStdWString(), c.second);
    EXPECT_EQ(format("%.400f").doDouble(1.0).getResult().length(), 402) << "a long field grows the buffer";
    EXPECT_EQ(format("%4096d").doInt(1).getResult().length(), 4096) << "the bound itself is accepted";
    EXPECT_EQ(format("%*.*e").doInt(4096).doInt(4096).doDouble(1.0).getResult().length(), 4096 + 6);
    CStringFormat shared(String("%d"));
    shared.doInt(1);
    EXPECT_EQ(shared.getResult().object(), shared.getResult().object()) << "the result is shared";
}

TEST(StringFormat, BadFieldsAndPushesAreRejectedWithTheFormat) {
    const std::wstring mismatch = L"argument does not match the field's format specification for '";
    struct Case { const wchar_t* format; void (*push)(CStringFormat&); const wchar_t* method; std::wstring message; };
    const auto none = [](CStringFormat&) {};
    const Case cases[] = {
        {L"%-+ #00d", none, L"goToNextFormatField", L"too many field flags specified in '%-+ #00d'"},
        {L"%y", none, L"goToNextFormatField", L"invalid format string in '%y'"},
        {L"abc %", none, L"goToNextFormatField", L"invalid format string in 'abc %'"},
        {L"%lld", none, L"goToNextFormatField", L"invalid format string in '%lld'"},  // one length modifier only
        {L"%I32d", none, L"goToNextFormatField", L"invalid format string in '%I32d'"},
        {L"%d %q", [](CStringFormat& f) { f.doInt(1); }, L"goToNextFormatField", L"invalid format string in '%d %q'"},
        {L"%d", [](CStringFormat& f) { f.doString(String("x")); }, L"doString", mismatch + L"%d'"},
        {L"%d", [](CStringFormat& f) { f.doDouble(1); }, L"doDouble", mismatch + L"%d'"},
        {L"%s", [](CStringFormat& f) { f.doInt(1); }, L"doInt", mismatch + L"%s'"},
        {L"%s", [](CStringFormat& f) { f.doChar(U'x'); }, L"doChar", mismatch + L"%s'"},
        {L"text", [](CStringFormat& f) { f.doInt(1); }, L"doInt", mismatch + L"text'"},
        {L"%*d", [](CStringFormat& f) { f.doDouble(1); }, L"doDouble", L"expected integer value (field width) in '%*d'"},
        {L"%.*f", [](CStringFormat& f) { f.doString(String("x")); }, L"doString",
         L"expected integer value (field precision) in '%.*f'"},
        // Widths and precisions above the bound would ask for gigabytes.
        {L"%5555555555555c", none, L"goToNextFormatField", L"invalid format string in '%5555555555555c'"},
        {L"%2147483647d", none, L"goToNextFormatField", L"invalid format string in '%2147483647d'"},
        {L"%.999999999e", none, L"goToNextFormatField", L"invalid format string in '%.999999999e'"},
        {L"%4097s", none, L"goToNextFormatField", L"invalid format string in '%4097s'"},
        {L"%*c", [](CStringFormat& f) { f.doInt(int64_t(UInt64Max), false); }, L"doInt",
         L"invalid format string in '%*c'"},
        {L"%.*e", [](CStringFormat& f) { f.doInt(4097); }, L"doInt", L"invalid format string in '%.*e'"},
        {L"%*d", [](CStringFormat& f) { f.doChar(U'\U0010FFFF'); }, L"doChar", L"invalid format string in '%*d'"},
    };
    for (const Case& c : cases) {
        try {
            CStringFormat formatter{String(c.format)};
            c.push(formatter);
            ADD_FAILURE() << "no error for " << String(c.format);
        } catch (const CInvalidArgError& error) {
            EXPECT_EQ(error.getMethod().toStdWString(), L"CStringFormat::" + std::wstring(c.method)) << String(c.format);
            EXPECT_EQ(error.getArgument().toStdWString(), c.message);
            EXPECT_TRUE(error.getMessage().contains(String::fromWide(c.message))) << error.getMessage();
        }
    }
    CStringFormat unfinished(String("%d and %*d"));
    unfinished.doInt(1).doInt(3);  // the width, but not the value
    try {
        unfinished.getResult();
        ADD_FAILURE() << "no error";
    } catch (const CInvalidObjectStateError& error) {
        EXPECT_TRUE(error.getMessage().contains(String(L"CStringFormat: not all parameters have been pushed in yet.")))
            << error.getMessage();
    }
}
