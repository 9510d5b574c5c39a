#include <zuno/CError.h>
#include <zuno/CJsonParser.h>
#include <zuno/CStringFormat.h>
#include <zuno/CStringInStream.h>
#include <zuno/CVariantArray.h>
#include <zuno/CVariantDouble.h>
#include <zuno/CVariantInt64.h>
#include <zuno/CVariantMap.h>
#include <zuno/CVariantString.h>
#include <zuno/CVariantUInt64.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <vector>

namespace zuno {

namespace {

constexpr bool WideIsUTF16 = sizeof(wchar_t) == sizeof(char16_t);

bool isDigit(int32_t c) { return c >= u'0' && c <= u'9'; }

// Matches a letter in either case.
bool isLetter(int32_t c, char16_t lower) { return c == lower || c == lower - (u'a' - u'A'); }

int32_t hexDigitValue(char16_t c) {
    if (c >= u'0' && c <= u'9') return c - u'0';
    if (c >= u'a' && c <= u'f') return c - u'a' + 10;
    if (c >= u'A' && c <= u'F') return c - u'A' + 10;
    return -1;
}

// A double truncated toward zero into the 64-bit range.
int64_t truncateToInt64(double value) {
    if (value >= 9223372036854775807.0) return std::numeric_limits<int64_t>::max();
    if (value <= -9223372036854775808.0) return std::numeric_limits<int64_t>::min();
    return int64_t(value);
}

// Whether a number text that a double cannot hold ("-"? digits, "." digits?, "e" "-"?
// digits?, with an integer part of "0" or without leading zeros) is too large rather than
// too small: whether the power of ten of its first significant digit is positive.
bool isTooLarge(const std::string& number) {
    const size_t first = number[0] == '-' ? 1 : 0;
    const size_t integerEnd = std::min(number.find_first_of(".e", first), number.size());
    int64_t order = int64_t(integerEnd - first) - 1;
    if (number[first] == '0') {
        const size_t significant = number.find_first_not_of('0', integerEnd + 1);
        order = -int64_t(significant - integerEnd);
    }
    int64_t exponent = 0;
    const size_t e = number.find('e');
    if (e != std::string::npos) std::from_chars(number.data() + e + 1, number.data() + number.size(), exponent);
    return order + exponent > 0;
}

} // namespace

CJsonParser::CJsonParser(P<IPeekableInStream> in, JsonMode mode) : CParserBase(std::move(in)), m_mode(mode) {}

P<IVariant> CJsonParser::parse(const String& text, JsonMode mode) {
    if (text.isEmpty()) return nullptr;
    return CJsonParser(make<CStringInStream>(text), mode).parseDocument();
}

P<IVariant> CJsonParser::parseDocument() {
    if (peekChar() == EndOfStream) return nullptr;
    for (;;) {
        // Whatever precedes the root is skipped.
        const int32_t c = peekChar();
        if (c == u'{') return parseObject(1);
        if (c == u'[') return parseArray(1);
        if (c == EndOfStream) raise(L"could not parse Json String, first element must be an object or an array");
        skipChar();
    }
}

void CJsonParser::raiseError(const String& message) const {
    throw CJsonParserError(message);
}

P<IVariant> CJsonParser::parseValue(int32_t depth) {
    switch (skipIgnoredChars()) {
    case u'"':
        readString();
        return make<CVariantString>(m_text.toString());
    case u'-': case u'0': case u'1': case u'2': case u'3': case u'4':
    case u'5': case u'6': case u'7': case u'8': case u'9':
        return parseNumber();
    case u't': case u'f': case u'T': case u'F':
        return parseBoolean();
    case u'{':
        return parseObject(depth + 1);
    case u'[':
        return parseArray(depth + 1);
    case u'n': case u'N':
        parseNull();
        if (!m_null) m_null = make<CVariantNull>();
        return m_null;
    default:
        raise(L"unknown object for parse value");
    }
}

void CJsonParser::checkNesting(int32_t depth) const {
    if (depth > MaxNesting) {
        raise(CStringFormat(L"objects and arrays nested deeper than %d levels").doInt(MaxNesting).getResult());
    }
}

P<IVariant> CJsonParser::parseObject(int32_t depth) {
    checkNesting(depth);
    expectChar(u'{');
    const size_t first = m_entries.size();
    if (skipIgnoredChars() != u'}') {
        for (;;) {
            if (skipIgnoredChars() != u'"') raise(L"could not parse key");
            readString();
            String key = internKey();
            skipIgnoredChars();
            expectChar(u':');
            P<IVariant> value = parseValue(depth);
            m_entries.push_back(CVariantMap::Entry{std::move(key), std::move(value)});
            if (skipIgnoredChars() != u',') break;
            skipChar();
        }
    }
    expectChar(u'}');
    P<CVariantMap> map = make<CVariantMap>();
    map->reserve(int32_t(m_entries.size() - first));
    for (size_t i = first; i < m_entries.size(); ++i) map->set(std::move(m_entries[i].key), std::move(m_entries[i].value));
    m_entries.resize(first);
    return map;
}

P<IVariant> CJsonParser::parseArray(int32_t depth) {
    checkNesting(depth);
    expectChar(u'[');
    const size_t first = m_values.size();
    if (skipIgnoredChars() != u']') {
        for (;;) {
            P<IVariant> value = parseValue(depth);
            m_values.push_back(std::move(value));
            if (skipIgnoredChars() != u',') break;
            skipChar();
        }
    }
    expectChar(u']');
    P<CVariantArray> array = make<CVariantArray>();
    array->reserve(int32_t(m_values.size() - first));
    for (size_t i = first; i < m_values.size(); ++i) array->add(std::move(m_values[i]));
    m_values.resize(first);
    return array;
}

void CJsonParser::readString() {
    skipChar();  // the opening quote
    m_text.clear();
    for (;;) {
        // Runs of plain characters are copied straight from the stream's window; where
        // wchar_t has 32 bits, surrogates stop the run so that pairs are joined.
        const char16_t* run = m_cur;
        while (run != m_end && *run != u'"' && *run != u'\\' && !(!WideIsUTF16 && (*run & 0xF800) == 0xD800)) ++run;
        wchar_t* out = m_text.extend(size_t(run - m_cur));
        for (const char16_t* unit = m_cur; unit != run; ++unit) *out++ = wchar_t(*unit);
        m_cur = run;
        if (run != m_end && *run != u'"' && *run != u'\\') {
            m_text.appendUTF16(m_cur++, 1);
            continue;
        }
        if (run == m_end) {
            if (!fill()) raise(L"unexspected end of stream");
            continue;
        }
        ++m_cur;
        if (*run == u'"') return;
        parseEscape();
    }
}

String CJsonParser::internKey() {
    const size_t count = m_text.size();
    if (count > MaxCachedKeyLength) return m_text.toString();
    const wchar_t* units = m_text.data();
    uint32_t hash = 2166136261u;  // FNV-1a
    for (size_t i = 0; i < count; ++i) hash = (hash ^ uint32_t(units[i])) * 16777619u;
    if (m_keyCache.empty()) m_keyCache.resize(KeyCacheSize);
    P<IString>& cached = m_keyCache[hash & (KeyCacheSize - 1)];
    const size_t bytes = count * sizeof(wchar_t);
    if (cached && size_t(cached->getByteLength()) == bytes && std::memcmp(cached->getData(), units, bytes) == 0) {
        return String(cached);
    }
    String key = m_text.toString();
    cached = key.object();
    return key;
}

void CJsonParser::parseEscape() {
    const int32_t c = readChar();
    switch (c) {
    case EndOfStream: raise(L"unexspected end of stream");
    case u'u': case u'U': parseUnicodeEscape(); return;
    case u'"': case u'/': case u'\\': m_text.append(wchar_t(c)); return;
    case u'b': m_text.append(L'\b'); return;
    case u'f': m_text.append(L'\f'); return;
    case u'n': m_text.append(L'\n'); return;
    case u'r': m_text.append(L'\r'); return;
    case u't': m_text.append(L'\t'); return;
    default:
        raise(CStringFormat(L"unknown char in excaped string: %s").doString(describeChar(c)).getResult());
    }
}

void CJsonParser::parseUnicodeEscape() {
    char16_t digits[4];
    if (peekChars(digits, 4) < 4) raise(L"stream size to small for reading unicode char");
    char16_t unit = 0;
    for (char16_t digit : digits) {
        const int32_t value = hexDigitValue(digit);
        if (value < 0) raise(L"could not parse unicode escaped string");
        unit = char16_t(unit * 16 + value);
    }
    for (int i = 0; i < 4; ++i) readChar();
    m_text.appendUTF16(&unit, 1);
}

P<IVariant> CJsonParser::parseNumber() {
    // In exact mode the number's text is gathered, in a form std::from_chars reads.
    const bool exact = m_mode == JsonMode::Exact;
    m_number.clear();
    bool negative = false;
    int32_t c = peekChar();
    if (c == u'-') {
        negative = true;
        if (exact) m_number.push_back('-');
        skipChar();
        c = peekChar();
    }

    // The integer part; when it outgrows 64 bits it goes on as a double.
    uint64_t integer = 0;
    double bigInteger = 0;
    bool beyondInt64 = false;
    if (c == u'0') {
        skipChar();
        c = peekChar();
    } else if (c >= u'1' && c <= u'9') {
        do {
            if (exact) m_number.push_back(char(c));
            const unsigned digit = unsigned(c - u'0');
            if (beyondInt64) {
                bigInteger = bigInteger * 10 + digit;
            } else if (integer > (std::numeric_limits<uint64_t>::max() - digit) / 10) {
                beyondInt64 = true;
                bigInteger = double(integer) * 10 + digit;
            } else {
                integer = integer * 10 + digit;
            }
            skipChar();
            c = peekChar();
        } while (isDigit(c));
        const uint64_t limit = uint64_t(std::numeric_limits<int64_t>::max()) + (negative ? 1 : 0);
        if (!beyondInt64 && integer > limit) {
            beyondInt64 = true;
            bigInteger = double(integer);
        }
    }

    if (exact && (m_number.empty() || m_number == "-")) m_number.push_back('0');

    double fraction = 0;
    bool hasFractionOrExponent = false;
    if (c == u'.') {
        hasFractionOrExponent = true;
        if (exact) m_number.push_back('.');
        skipChar();
        double divisor = 1;
        c = readRequiredDigit();
        do {
            if (exact) m_number.push_back(char(c));
            divisor *= 10;
            fraction += (c - u'0') / divisor;
            skipChar();
            c = peekChar();
        } while (isDigit(c));
    }

    int32_t exponent = 0;
    bool negativeExponent = false;
    if (c == u'e' || c == u'E') {
        hasFractionOrExponent = true;
        skipChar();
        if (peekChar() == u'-') {
            negativeExponent = true;
            skipChar();
        }
        if (peekChar() == u'+') skipChar();
        c = readRequiredDigit();
        do {
            const int32_t digit = c - u'0';
            exponent = exponent > (std::numeric_limits<int32_t>::max() - digit) / 10 ? std::numeric_limits<int32_t>::max()
                                                                                      : exponent * 10 + digit;
            skipChar();
            c = peekChar();
        } while (isDigit(c));
        if (exact) {
            // The exponent as read, saturated; from_chars reports what it cannot hold.
            m_number.push_back('e');
            if (negativeExponent) m_number.push_back('-');
            m_number += std::to_string(exponent);
        }
    }

    if (exact) return makeExactNumber(hasFractionOrExponent);
    if (!beyondInt64 && fraction == 0 && exponent == 0) {
        return make<CVariantInt64>(negative ? int64_t(0 - integer) : int64_t(integer));
    }
    double value = (beyondInt64 ? bigInteger : double(integer)) + fraction;
    if (negative) value = -value;
    // Once the value is zero or infinite, further steps change nothing.
    for (int32_t step = 0; step < exponent && value != 0 && std::isfinite(value); ++step) {
        value = negativeExponent ? value / 10 : value * 10;
    }
    if (beyondInt64 || fraction >= 0.00001 || exponent > 1) return make<CVariantDouble>(value);
    return make<CVariantInt64>(truncateToInt64(value));
}

P<IVariant> CJsonParser::makeExactNumber(bool hasFractionOrExponent) const {
    const char* first = m_number.data();
    const char* last = first + m_number.size();
    if (!hasFractionOrExponent) {
        int64_t signedValue = 0;
        if (std::from_chars(first, last, signedValue).ec == std::errc()) return make<CVariantInt64>(signedValue);
        uint64_t unsignedValue = 0;
        if (std::from_chars(first, last, unsignedValue).ec == std::errc()) return make<CVariantUInt64>(unsignedValue);
    }
    double value = 0;
    if (std::from_chars(first, last, value).ec == std::errc::result_out_of_range) {
        value = isTooLarge(m_number) ? std::numeric_limits<double>::infinity() : 0.0;
        if (*first == '-') value = -value;
    }
    return make<CVariantDouble>(value);
}

int32_t CJsonParser::readRequiredDigit() {
    const int32_t c = peekChar();
    if (c == EndOfStream) raise(L"unexspected end of stream");
    if (!isDigit(c)) raise(L"not a number value");
    return c;
}

P<IVariant> CJsonParser::parseBoolean() {
    char16_t text[4];
    for (char16_t& c : text) {
        const int32_t next = readChar();
        if (next == EndOfStream) raise(L"unexspected end of stream");
        c = char16_t(next);
    }
    if (isLetter(text[0], u't') && isLetter(text[1], u'r') && isLetter(text[2], u'u') && isLetter(text[3], u'e')) {
        if (!m_true) m_true = make<CVariantBoolean>(true);
        return m_true;
    }
    if (isLetter(text[0], u'f') && isLetter(text[1], u'a') && isLetter(text[2], u'l') && isLetter(text[3], u's')) {
        const int32_t last = readChar();
        if (last == EndOfStream) raise(L"unexspected end of stream");
        if (last == u'e') {
            if (!m_false) m_false = make<CVariantBoolean>(false);
            return m_false;
        }
    }
    raise(L"could not parse boolean value");
}

void CJsonParser::parseNull() {
    expectChar(u'n');
    expectChar(u'u');
    expectChar(u'l');
    expectChar(u'l');
}

} // namespace zuno
