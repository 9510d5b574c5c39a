#include <zuno/CObjectError.h>
#include <zuno/CStringFormat.h>
#include <zuno/String.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

using namespace zuno;

namespace {

constexpr int64_t Int64Min = std::numeric_limits<int64_t>::min();
constexpr int64_t Int64Max = std::numeric_limits<int64_t>::max();
constexpr uint64_t UInt64Max = std::numeric_limits<uint64_t>::max();

std::string formatInt(const char* format, int64_t value, bool isSigned = true) {
    return CStringFormat(String(format)).doInt(value, isSigned).getResult().toStdString();
}

// Runs `push` on a fresh formatter and returns the CInvalidArgError it raises.
template <class Push>
CInvalidArgError invalidArgument(const wchar_t* format, Push push) {
    try {
        CStringFormat formatter{String(format)};
        push(formatter);
    } catch (const CInvalidArgError& error) {
        return error;
    }
    ADD_FAILURE() << "no CInvalidArgError for " << String(format);
    return CInvalidArgError(nullptr, nullptr, String(), String());
}

} // namespace

TEST(StringFormat, IntegerFieldsFollowTheirOwnRules) {
    struct Case {
        const char* format;
        int64_t value;
        bool isSigned;
        const char* expected;
    };
    const Case cases[] = {
        {"%d", 42, true, "42"},
        {"%i", -7, true, "-7"},
        {"%d", Int64Min, true, "-9223372036854775808"},
        {"%d", int64_t(UInt64Max), false, "18446744073709551615"},  // an unsigned push prints unsigned
        {"%u", -5, true, "-5"},                                      // a signed push prints its sign
        {"%x", -1, true, "ffffffffffffffff"},                        // x, X and o never print a sign
        {"%o", -1, true, "1777777777777777777777"},
        {"%X", 255, true, "FF"},
        {"%5d|", -42, true, "   -42|"},                              // the sign is outside the width
        {"%05d", -42, true, "-00042"},
        {"%+05d", 42, true, "+00042"},
        {"% d", 5, true, " 5"},
        {"%+d", 5, false, "5"},                                      // no sign for unsigned pushes
        {"%-5d|", 42, true, "42   |"},
        {"%-05d|", 42, true, "42   |"},                              // left-justified pads with blanks
        {"%08.3d", 5, true, "00000005"},                             // zero padding despite a precision
        {"%5.3d", 7, true, "  007"},
        {"%.0d", 0, true, ""},
        {"%5.0d|", 0, true, "     |"},
        {"%#x", 255, true, "0xff"},
        {"%#X", 255, true, "0XFF"},
        {"%#08x", 255, true, "0x0000ff"},
        {"%#x", 0, true, "0x0"},                                     // the prefix even for zero
        {"%#.0x", 0, true, "0x"},
        {"%#o", 8, true, "010"},
        {"%#o", 0, true, "00"},
        {"%#.4o", 8, true, "00010"},
        {"%I64d", 5, true, "5"},
        {"%Id|%ld|%hd|%jd|%zd|%td|%Ld", 5, true, nullptr},  // checked below with seven pushes
    };
    for (const Case& c : cases) {
        if (!c.expected) continue;
        EXPECT_EQ(formatInt(c.format, c.value, c.isSigned), c.expected) << c.format << " with " << c.value;
    }
    CStringFormat modifiers(String("%Id|%ld|%hd|%jd|%zd|%td|%Ld"));
    for (int i = 0; i < 7; ++i) modifiers.doInt(i);
    EXPECT_EQ(modifiers.getResult().toStdString(), "0|1|2|3|4|5|6");
}

TEST(StringFormat, IntegerFieldsAgreeWithTheCLibraryWhereTheRulesMeet) {
    // The fields where the deliberate differences do not apply: no sign character, no
    // zero flag together with a precision, the alternate form only for x, X and o with a
    // value other than zero and, for o, without a precision.
    const char* const flagSets[] = {"", "-", "0", "-0", "#", "#0", "#-"};
    const char* const widths[] = {"", "1", "8", "25"};
    const char* const precisions[] = {"", ".0", ".1", ".5", ".22"};
    const char conversions[] = {'d', 'i', 'u', 'x', 'X', 'o'};
    const int64_t decimalValues[] = {0, 1, 42, 1000000, Int64Max};
    const int64_t bitValues[] = {0, 1, 8, 255, 0xdeadbeef, -1, Int64Min};

    int compared = 0;
    for (const char conversion : conversions) {
        const bool decimal = conversion == 'd' || conversion == 'i' || conversion == 'u';
        for (const int64_t value : decimal ? std::vector<int64_t>(std::begin(decimalValues), std::end(decimalValues))
                                           : std::vector<int64_t>(std::begin(bitValues), std::end(bitValues))) {
            for (const std::string flags : flagSets) {
                const bool alternate = flags.find('#') != std::string::npos;
                if (alternate && (decimal || value == 0)) continue;
                for (const std::string width : widths) {
                    for (const std::string precision : precisions) {
                        if (!precision.empty() && flags.find('0') != std::string::npos) continue;
                        if (!precision.empty() && alternate && conversion == 'o') continue;
                        const std::string field = "%" + flags + width + precision;
                        char expected[128];
                        std::snprintf(expected, sizeof expected, (field + "ll" + conversion + "|").c_str(),
                                      static_cast<long long>(value));
                        const bool isSigned = conversion != 'u';
                        EXPECT_EQ(formatInt((field + conversion + "|").c_str(), value, isSigned), expected)
                            << field << conversion << " with " << value;
                        ++compared;
                    }
                }
            }
        }
    }
    EXPECT_GT(compared, 1000);
}

TEST(StringFormat, StarTakesWidthAndPrecisionFromIntegerPushes) {
    EXPECT_EQ(CStringFormat(String("%*d|")).doInt(5).doInt(42).getResult().toStdString(), "   42|");
    EXPECT_EQ(CStringFormat(String("%*d|")).doInt(-3).doInt(42).getResult().toStdString(), "42|");
    EXPECT_EQ(CStringFormat(String("%.*d")).doInt(3).doInt(5).getResult().toStdString(), "005");
    EXPECT_EQ(CStringFormat(String("%*.*f")).doInt(8).doInt(2).doDouble(3.14159).getResult().toStdString(), "    3.14");
    EXPECT_EQ(CStringFormat(String("%*d")).doChar(U'\x04').doChar(U'A').getResult().toStdString(), "  65")
        << "characters pushed for a width or an integer field count as integers";
}

TEST(StringFormat, FloatingPointFieldsPrintAsTheCLibraryDoesOnEveryPlatform) {
    struct Case {
        const char* format;
        double value;
        const char* expected;
    };
    const Case cases[] = {
        {"%g", 1e8, "1e+08"},
        {"%g", 0.1, "0.1"},
        {"%G", 1e-10, "1E-10"},
        {"%e", 12345.678, "1.234568e+04"},
        {"%E", 1e300, "1.000000E+300"},
        {"%.3f", 3.14159, "3.142"},
        {"%10.2f|", 3.14159, "      3.14|"},
        {"%-10.2f|", 3.14159, "3.14      |"},
        {"%+.1e", 123456.0, "+1.2e+05"},
        {"%010.3f", -2.5, "-00002.500"},
        {"%#.0f", 3.0, "3."},
        {"%Lf", 0.5, "0.500000"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(CStringFormat(String(c.format)).doDouble(c.value).getResult().toStdString(), c.expected) << c.format;
    }
    EXPECT_EQ(CStringFormat(String("%5.1f")).doInt(3).getResult().toStdString(), "  3.0");
    EXPECT_EQ(CStringFormat(String("%g")).doInt(int64_t(UInt64Max), false).getResult().toStdString(), "1.84467e+19");
    EXPECT_EQ(CStringFormat(String("%g")).doInt(-1).getResult().toStdString(), "-1");
    EXPECT_EQ(CStringFormat(String("%.400f")).doDouble(1.0).getResult().length(), 402) << "a long field grows the buffer";
}

TEST(StringFormat, CharacterAndStringFieldsCountCharacters) {
    auto text = [](const char* format, const String& value) {
        return CStringFormat(String(format)).doString(value).getResult();
    };
    auto character = [](const char* format, char32_t value) {
        return CStringFormat(String(format)).doChar(value).getResult();
    };
    EXPECT_EQ(character("%c", U'A'), String(L"A"));
    EXPECT_EQ(character("%3c|", U'x'), String(L"  x|"));
    EXPECT_EQ(character("%-3C|", U'x'), String(L"x  |"));
    EXPECT_EQ(character("%3c|", U'\u00e9'), String(L"  \u00e9|")) << "characters above 127 print as strings";
    EXPECT_EQ(character("%c", U'\U0001F600'), String::fromChar(U'\U0001F600'));
    EXPECT_EQ(CStringFormat(String("%c%c")).doInt(65).doInt(0x20AC).getResult(), String(L"A\u20ac"));

    EXPECT_EQ(text("%s", String("hello")), String(L"hello"));
    EXPECT_EQ(text("[%8s]", String::fromUTF8("h\xc3\xa9llo")), String(L"[   h\u00e9llo]"));
    EXPECT_EQ(text("[%-8S]", String(L"h\u00e9llo")), String(L"[h\u00e9llo   ]"));
    EXPECT_EQ(text("[%.2s]", String(L"h\u00e9llo")), String(L"[h\u00e9]"));
    EXPECT_EQ(text("[%3s]", String::fromChar(U'\U0001F600')), String(L"[  ") + String::fromChar(U'\U0001F600') + String(L"]"));
    EXPECT_EQ(text("[%s]", String()), String(L"[]")) << "a null String prints as empty text";
    EXPECT_EQ(text("[%4s]", String(L"a\0b", 3)), String(L"[   a]")) << "text ends at a NUL, as in C";
}

TEST(StringFormat, LiteralTextAndPercentSigns) {
    EXPECT_EQ(CStringFormat(String("no fields")).getResult(), String(L"no fields"));
    EXPECT_EQ(CStringFormat(String("100%% sure, %%d")).getResult(), String(L"100% sure, %d"));
    EXPECT_EQ(CStringFormat(String(L"\u00e4%s\u00fc")).doString(String("-")).getResult(), String(L"\u00e4-\u00fc"));
    EXPECT_EQ(CStringFormat(String::fromUTF8("%d \xe2\x82\xac")).doInt(3).getResult(), String(L"3 \u20ac"));
    EXPECT_EQ(CStringFormat(String()).getResult(), String::empty());
    EXPECT_EQ(CStringFormat(String("%-+ #0d")).doInt(42).getResult(), String(L"+42")) << "five flags are accepted";

    CStringFormat format(String("%d"));
    format.doInt(1);
    EXPECT_EQ(format.getResult().object(), format.getResult().object()) << "the result is shared";
}

TEST(StringFormat, MalformedFieldsAreRejected) {
    struct Case {
        const wchar_t* format;
        const wchar_t* message;
    };
    const Case cases[] = {
        {L"%-+ #00d", L"too many field flags specified in '%-+ #00d'"},
        {L"%y", L"invalid format string in '%y'"},
        {L"abc %", L"invalid format string in 'abc %'"},
        {L"%lld", L"invalid format string in '%lld'"},  // one length modifier only
        {L"%I32d", L"invalid format string in '%I32d'"},
    };
    for (const Case& c : cases) {
        const CInvalidArgError error = invalidArgument(c.format, [](CStringFormat&) {});
        EXPECT_EQ(error.getMethod(), String(L"CStringFormat::goToNextFormatField")) << String(c.format);
        EXPECT_EQ(error.getArgument(), String(c.message));
        EXPECT_TRUE(error.getMessage().contains(String(c.message)));
    }
    // A bad field after a good one is found when the good one is filled.
    EXPECT_EQ(invalidArgument(L"%d %q", [](CStringFormat& f) { f.doInt(1); }).getArgument(),
              String(L"invalid format string in '%d %q'"));
}

TEST(StringFormat, PushesThatDoNotFitTheFieldAreRejected) {
    const wchar_t* const mismatch = L"argument does not match the field's format specification for '";
    struct Case {
        const wchar_t* format;
        void (*push)(CStringFormat&);
        const wchar_t* method;
        std::wstring message;
    };
    const Case cases[] = {
        {L"%d", [](CStringFormat& f) { f.doString(String("x")); }, L"CStringFormat::doString", mismatch + std::wstring(L"%d'")},
        {L"%d", [](CStringFormat& f) { f.doDouble(1); }, L"CStringFormat::doDouble", mismatch + std::wstring(L"%d'")},
        {L"%s", [](CStringFormat& f) { f.doInt(1); }, L"CStringFormat::doInt", mismatch + std::wstring(L"%s'")},
        {L"%s", [](CStringFormat& f) { f.doChar(U'x'); }, L"CStringFormat::doChar", mismatch + std::wstring(L"%s'")},
        {L"%f", [](CStringFormat& f) { f.doChar(U'x'); }, L"CStringFormat::doChar", mismatch + std::wstring(L"%f'")},
        {L"%c", [](CStringFormat& f) { f.doString(String("x")); }, L"CStringFormat::doString", mismatch + std::wstring(L"%c'")},
        {L"text", [](CStringFormat& f) { f.doInt(1); }, L"CStringFormat::doInt", mismatch + std::wstring(L"text'")},
        {L"%*d", [](CStringFormat& f) { f.doDouble(1); }, L"CStringFormat::doDouble",
         L"expected integer value (field width) in '%*d'"},
        {L"%.*f", [](CStringFormat& f) { f.doString(String("x")); }, L"CStringFormat::doString",
         L"expected integer value (field precision) in '%.*f'"},
    };
    for (const Case& c : cases) {
        const CInvalidArgError error = invalidArgument(c.format, c.push);
        EXPECT_EQ(error.getMethod(), String(c.method)) << String(c.format);
        EXPECT_EQ(error.getArgument(), String::fromWide(c.message)) << String(c.format);
    }
}

TEST(StringFormat, ResultNeedsEveryField) {
    CStringFormat format(String("%d and %d"));
    format.doInt(1);
    try {
        format.getResult();
        FAIL() << "no error";
    } catch (const CInvalidObjectStateError& error) {
        EXPECT_TRUE(error.getMessage().contains(String(L"CStringFormat: not all parameters have been pushed in yet.")))
            << error.getMessage();
    }
    CStringFormat width(String("%*d"));
    width.doInt(3);
    EXPECT_THROW(width.getResult(), CInvalidObjectStateError);
}
