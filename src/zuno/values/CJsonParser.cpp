#include <zuno/CError.h>
#include <zuno/CJsonParser.h>
#include <zuno/CStringFormat.h>
#include <zuno/CStringInStream.h>
#include <zuno/CVariantBoolean.h>
#include <zuno/CVariantNull.h>
#include <zuno/CWideTextBuffer.h>
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

#include "text/utf8Decode.h"

namespace zuno {

namespace {

constexpr bool WideIsUTF16 = sizeof(wchar_t) == sizeof(char16_t);

bool isDigit(int32_t c) { return c >= u'0' && c <= u'9'; }

// Matches a letter in either case.
bool isLetter(int32_t c, char16_t lower) { return c == lower || c == lower - (u'a' - u'A'); }

// Below this, ten times an integer plus a digit fits in 64 bits.
constexpr uint64_t SafeToScale = std::numeric_limits<uint64_t>::max() / 10 - 1;

// The terms d / 10^k of a fraction's digits, for the first places, computed exactly as the
// digit-by-digit rule computes them (the divisor multiplied by ten per place), so that a
// look-up gives the same bits as the division.
constexpr size_t FractionPlaces = 24;
struct FractionTable {
    double terms[FractionPlaces][10];
};
const FractionTable& fractionTable() {
    static const FractionTable table = [] {
        FractionTable built{};
        double divisor = 1;
        for (size_t place = 0; place < FractionPlaces; ++place) {
            divisor *= 10;
            for (int digit = 0; digit < 10; ++digit) built.terms[place][digit] = digit / divisor;
        }
        return built;
    }();
    return table;
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

// Reads the characters of the parser's stream, a window at a time (see CParserBase).
struct CJsonParser::StreamSource {
    CJsonParser& parser;

    int32_t peek() { return parser.peekChar(); }
    int32_t read() { return parser.readChar(); }
    void skip() { parser.skipChar(); }
    int64_t position() const { return parser.getPosition(); }
    int32_t peekUnits(char16_t* out, int32_t count) { return parser.peekChars(out, count); }
    String describe(int32_t c) { return parser.describeChar(c); }
    [[noreturn]] void raise(const String& message) const { parser.raise(message); }

    // Appends the characters up to the next quote, backslash or the end of the stream.
    void appendRun(CWideTextBuffer& text) {
        for (;;) {
            // Runs are copied straight from the stream's window; where wchar_t has 32 bits,
            // surrogates stop the run so that pairs are joined.
            const char16_t* run = parser.m_cur;
            const char16_t* end = parser.m_end;
            while (run != end && *run != u'"' && *run != u'\\' && !(!WideIsUTF16 && (*run & 0xF800) == 0xD800)) ++run;
            wchar_t* out = text.extend(size_t(run - parser.m_cur));
            for (const char16_t* unit = parser.m_cur; unit != run; ++unit) *out++ = wchar_t(*unit);
            parser.m_cur = run;
            if (run == end) {
                if (!parser.fill()) return;
            } else if (*run == u'"' || *run == u'\\') {
                return;
            } else {
                text.appendUTF16(parser.m_cur++, 1);
            }
        }
    }
};

// Reads text held in memory: UTF-8 bytes, or wide characters (UTF-16 code units where
// wchar_t has 16 bits, code points where it has 32). The grammar sees the UTF-16 code
// units the stream would give: a character beyond U+FFFF is two units, and ill-formed
// UTF-8 is U+FFFD. ASCII, which is all of JSON's own syntax, takes the short way.
template <class Unit>
struct CJsonParser::MemorySource {
    static constexpr bool IsUTF8 = sizeof(Unit) == 1;
    static constexpr bool IsUTF32 = sizeof(Unit) == 4;

    const CJsonParser& parser;
    const Unit* begin;
    const Unit* cur;
    const Unit* end;
    bool secondHalf = false;  // the high surrogate of the character at cur was read

    MemorySource(const CJsonParser& owner, const Unit* text, size_t count)
        : parser(owner), begin(text), cur(text), end(text + count) {}

    // A unit the grammar takes as it is.
    static bool isSimple(Unit u) {
        if constexpr (IsUTF8) return u < 0x80;
        if constexpr (IsUTF32) return uint32_t(u) < 0x10000;
        return true;
    }
    // The character at `p`, and where the next begins.
    static char32_t decode(const Unit*& p, const Unit* end) {
        if constexpr (IsUTF8) {
            return decodeUTF8(p, end);
        } else {
            const uint32_t c = uint32_t(*p++);
            return c > 0x10FFFF ? 0xFFFD : char32_t(c);
        }
    }

    // Whether the eight bytes at `p` are ASCII other than a quote or a backslash.
    static bool isPlainASCII(const unsigned char* p) {
        constexpr uint64_t Ones = 0x0101010101010101u, HighBits = 0x8080808080808080u;
        uint64_t bytes;
        std::memcpy(&bytes, p, 8);
        const uint64_t quotes = bytes ^ (Ones * '"'), backslashes = bytes ^ (Ones * '\\');
        const uint64_t zeroQuote = (quotes - Ones) & ~quotes, zeroBackslash = (backslashes - Ones) & ~backslashes;
        return ((zeroQuote | zeroBackslash | bytes) & HighBits) == 0;
    }

    int32_t peek() {
        if (cur == end) return CParserBase::EndOfStream;
        if (isSimple(*cur)) return int32_t(uint32_t(*cur));
        const Unit* p = cur;
        const char32_t c = decode(p, end);
        if (c < 0x10000) return int32_t(c);
        return secondHalf ? int32_t(0xDC00 + ((c - 0x10000) & 0x3FF)) : int32_t(0xD800 + ((c - 0x10000) >> 10));
    }
    void skip() {
        if (isSimple(*cur)) {
            ++cur;
            return;
        }
        const Unit* p = cur;
        if (decode(p, end) >= 0x10000 && !secondHalf) {
            secondHalf = true;
        } else {
            cur = p;
            secondHalf = false;
        }
    }
    int32_t read() {
        const int32_t c = peek();
        if (c != CParserBase::EndOfStream) skip();
        return c;
    }
    // Counted only for a message, so counted afresh.
    int64_t position() const {
        int64_t units = secondHalf ? 1 : 0;
        for (const Unit* p = begin; p != cur;) units += decode(p, end) >= 0x10000 ? 2 : 1;
        return units;
    }
    int32_t peekUnits(char16_t* out, int32_t count) {
        const MemorySource saved = *this;
        int32_t taken = 0;
        for (int32_t c; taken < count && (c = read()) != CParserBase::EndOfStream; ++taken) out[taken] = char16_t(c);
        cur = saved.cur;
        secondHalf = saved.secondHalf;
        return taken;
    }
    String describe(int32_t c) {
        if (unicode::isHighSurrogate(char32_t(c))) {
            const int32_t next = peek();
            if (unicode::isLowSurrogate(char32_t(next))) return String::fromChar(unicode::combineSurrogates(char32_t(c), char32_t(next)));
        }
        return String::fromChar(char32_t(c));
    }
    [[noreturn]] void raise(const String& message) const { parser.raise(message); }

    // Appends the characters up to the next quote, backslash or the end of the text.
    void appendRun(CWideTextBuffer& text) {
        for (;;) {
            const Unit* run = cur;
            if constexpr (IsUTF8) {
                // Plain ASCII, eight bytes at a time, is widened straight into the text.
                while (end - run >= 8 && isPlainASCII(run)) run += 8;
                bool ascii = true;
                while (run != end && *run != '"' && *run != '\\') ascii &= *run++ < 0x80;
                if (ascii) {
                    wchar_t* out = text.extend(size_t(run - cur));
                    for (const Unit* p = cur; p != run; ++p) *out++ = wchar_t(*p);
                } else {
                    text.appendUTF8(reinterpret_cast<const char*>(cur), size_t(run - cur));
                }
                cur = run;
                return;
            } else if constexpr (IsUTF32) {
                // Surrogates stop the run, so that pairs are joined as the stream joins them.
                while (run != end && *run != L'"' && *run != L'\\' && (uint32_t(*run) & 0xFFFFF800u) != 0xD800) ++run;
                text.append(cur, size_t(run - cur));
                cur = run;
                if (run == end || *run == L'"' || *run == L'\\') return;
                const char16_t unit = char16_t(*cur++);
                text.appendUTF16(&unit, 1);
            } else {
                while (run != end && *run != L'"' && *run != L'\\') ++run;
                text.append(cur, size_t(run - cur));
                cur = run;
                return;
            }
        }
    }
};

// The grammar over one source of characters; it holds what one parse needs.
template <class Source>
class CJsonParser::Reader {
public:
    Reader(Source& in, JsonMode mode) : m_in(in), m_mode(mode) {}

    P<IVariant> parseDocument() {
        if (m_in.peek() == CParserBase::EndOfStream) return nullptr;
        for (;;) {
            // Whatever precedes the root is skipped.
            const int32_t c = m_in.peek();
            if (c == u'{') return parseObject(1);
            if (c == u'[') return parseArray(1);
            if (c == CParserBase::EndOfStream) {
                m_in.raise(L"could not parse Json String, first element must be an object or an array");
            }
            m_in.skip();
        }
    }

private:
    // Skips tab, line feed, carriage return and blank; the next character, not consumed.
    int32_t skipBlanks() {
        for (;;) {
            const int32_t c = m_in.peek();
            if (c != u' ' && c != u'\n' && c != u'\r' && c != u'\t') {
                if (c == CParserBase::EndOfStream) m_in.raise(L"end of stream found while advancing ignored chars");
                return c;
            }
            m_in.skip();
        }
    }
    // Consumes the next character, which must be `expected`.
    void expect(char16_t expected) {
        const int32_t found = m_in.peek();
        if (found == expected) {
            m_in.skip();
            return;
        }
        const int64_t position = m_in.position();
        if (found == CParserBase::EndOfStream) m_in.raise(L"unexspected end of stream");
        m_in.skip();
        m_in.raise(CStringFormat(L"Expected char '%s' not found at postion %d - found '%s'")
                       .doString(String::fromChar(expected))
                       .doInt(position)
                       .doString(m_in.describe(found))
                       .getResult());
    }

    P<IVariant> parseValue(int32_t depth);
    void checkNesting(int32_t depth) const;
    P<IVariant> parseObject(int32_t depth);
    P<IVariant> parseArray(int32_t depth);
    // Reads a string into m_text.
    void readString();
    // The key just read, shared with earlier equal keys.
    String internKey();
    void parseEscape();
    void parseUnicodeEscape();
    P<IVariant> parseNumber();
    // The number whose text is in m_number, read exactly.
    P<IVariant> makeExactNumber(bool hasFractionOrExponent) const;
    int32_t readRequiredDigit();
    P<IVariant> parseBoolean();
    void parseNull();

    static constexpr size_t KeyCacheSize = 1024;  // a power of two
    static constexpr size_t MaxCachedKeyLength = 64;
    static constexpr size_t LongText = 16384;  // characters

    Source& m_in;
    JsonMode m_mode;
    CWideTextBuffer m_text;  // the string being read
    std::string m_number;    // in exact mode, the number being read (ASCII)
    // Elements and pairs of the arrays and objects being read, innermost last: each
    // container is made once it is complete, with room for exactly its elements.
    std::vector<P<IVariant>> m_values;
    std::vector<CVariantMap::Entry> m_entries;
    // Recent keys by hash: documents repeat their keys, which then share one text object.
    std::vector<P<IString>> m_keyCache;
    // Scalars are immutable, so one instance of each constant serves the whole tree.
    P<IVariant> m_null;
    P<IVariant> m_true;
    P<IVariant> m_false;
};

CJsonParser::CJsonParser(P<IPeekableInStream> in, JsonMode mode) : CParserBase(std::move(in)), m_mode(mode) {}

P<IVariant> CJsonParser::parse(const String& text, JsonMode mode) {
    if (text.isEmpty()) return nullptr;
    // The text is read where it is: UTF-8 as bytes, any other encoding as wide text.
    const IString& object = *text.object();
    if (object.getEncoding() == Encoding::UTF8) {
        return parseUTF8(static_cast<const char*>(object.getData()), size_t(object.getByteLength()), mode);
    }
    const String wide = object.getEncoding() == Encoding::Wide ? text : text.toWide();
    const CJsonParser parser(nullptr, mode);
    MemorySource<wchar_t> source(parser, static_cast<const wchar_t*>(wide->getData()),
                                 size_t(wide->getByteLength()) / sizeof(wchar_t));
    return Reader<MemorySource<wchar_t>>(source, mode).parseDocument();
}

P<IVariant> CJsonParser::parseUTF8(const char* text, size_t size, JsonMode mode) {
    const CJsonParser parser(nullptr, mode);
    MemorySource<unsigned char> source(parser, reinterpret_cast<const unsigned char*>(text), size);
    return Reader<MemorySource<unsigned char>>(source, mode).parseDocument();
}

P<IVariant> CJsonParser::parseDocument() {
    StreamSource source{*this};
    return Reader<StreamSource>(source, m_mode).parseDocument();
}

void CJsonParser::raiseError(const String& message) const {
    throw CJsonParserError(message);
}

template <class Source>
P<IVariant> CJsonParser::Reader<Source>::parseValue(int32_t depth) {
    switch (skipBlanks()) {
    case u'"':
        readString();
        // A long text hands its buffer over instead of being copied; short ones are copied
        // into one compact object, and the buffer serves the next string.
        return make<CVariantString>(m_text.size() > LongText ? m_text.detachString() : m_text.toString());
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
        m_in.raise(L"unknown object for parse value");
    }
}

template <class Source>
void CJsonParser::Reader<Source>::checkNesting(int32_t depth) const {
    if (depth > MaxNesting) {
        m_in.raise(CStringFormat(L"objects and arrays nested deeper than %d levels").doInt(MaxNesting).getResult());
    }
}

template <class Source>
P<IVariant> CJsonParser::Reader<Source>::parseObject(int32_t depth) {
    checkNesting(depth);
    expect(u'{');
    const size_t first = m_entries.size();
    if (skipBlanks() != u'}') {
        for (;;) {
            if (skipBlanks() != u'"') m_in.raise(L"could not parse key");
            readString();
            String key = internKey();
            skipBlanks();
            expect(u':');
            P<IVariant> value = parseValue(depth);
            m_entries.push_back(CVariantMap::Entry{std::move(key), std::move(value)});
            if (skipBlanks() != u',') break;
            m_in.skip();
        }
    }
    expect(u'}');
    P<CVariantMap> map = make<CVariantMap>();
    map->reserve(int32_t(m_entries.size() - first));
    for (size_t i = first; i < m_entries.size(); ++i) map->set(std::move(m_entries[i].key), std::move(m_entries[i].value));
    m_entries.resize(first);
    return map;
}

template <class Source>
P<IVariant> CJsonParser::Reader<Source>::parseArray(int32_t depth) {
    checkNesting(depth);
    expect(u'[');
    const size_t first = m_values.size();
    if (skipBlanks() != u']') {
        for (;;) {
            P<IVariant> value = parseValue(depth);
            m_values.push_back(std::move(value));
            if (skipBlanks() != u',') break;
            m_in.skip();
        }
    }
    expect(u']');
    P<CVariantArray> array = make<CVariantArray>();
    array->reserve(int32_t(m_values.size() - first));
    for (size_t i = first; i < m_values.size(); ++i) array->add(std::move(m_values[i]));
    m_values.resize(first);
    return array;
}

template <class Source>
void CJsonParser::Reader<Source>::readString() {
    m_in.skip();  // the opening quote
    m_text.clear();
    for (;;) {
        m_in.appendRun(m_text);
        const int32_t c = m_in.read();
        if (c == CParserBase::EndOfStream) m_in.raise(L"unexspected end of stream");
        if (c == u'"') return;
        parseEscape();
    }
}

template <class Source>
String CJsonParser::Reader<Source>::internKey() {
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

template <class Source>
void CJsonParser::Reader<Source>::parseEscape() {
    const int32_t c = m_in.read();
    switch (c) {
    case CParserBase::EndOfStream: m_in.raise(L"unexspected end of stream");
    case u'u': case u'U': parseUnicodeEscape(); return;
    case u'"': case u'/': case u'\\': m_text.append(wchar_t(c)); return;
    case u'b': m_text.append(L'\b'); return;
    case u'f': m_text.append(L'\f'); return;
    case u'n': m_text.append(L'\n'); return;
    case u'r': m_text.append(L'\r'); return;
    case u't': m_text.append(L'\t'); return;
    default:
        m_in.raise(CStringFormat(L"unknown char in excaped string: %s").doString(m_in.describe(c)).getResult());
    }
}

template <class Source>
void CJsonParser::Reader<Source>::parseUnicodeEscape() {
    char16_t digits[4];
    if (m_in.peekUnits(digits, 4) < 4) m_in.raise(L"stream size to small for reading unicode char");
    char16_t unit = 0;
    for (char16_t digit : digits) {
        const int value = unicode::hexDigitValue(digit);
        if (value < 0) m_in.raise(L"could not parse unicode escaped string");
        unit = char16_t(unit * 16 + value);
    }
    for (int i = 0; i < 4; ++i) m_in.read();
    m_text.appendUTF16(&unit, 1);
}

template <class Source>
P<IVariant> CJsonParser::Reader<Source>::parseNumber() {
    // In exact mode the number's text is gathered, in a form std::from_chars reads.
    const bool exact = m_mode == JsonMode::Exact;
    m_number.clear();
    bool negative = false;
    int32_t c = m_in.peek();
    if (c == u'-') {
        negative = true;
        if (exact) m_number.push_back('-');
        m_in.skip();
        c = m_in.peek();
    }

    // The integer part; when it outgrows 64 bits it goes on as a double.
    uint64_t integer = 0;
    double bigInteger = 0;
    bool beyondInt64 = false;
    if (c == u'0') {
        m_in.skip();
        c = m_in.peek();
    } else if (c >= u'1' && c <= u'9') {
        do {
            if (exact) m_number.push_back(char(c));
            const unsigned digit = unsigned(c - u'0');
            if (beyondInt64) {
                bigInteger = bigInteger * 10 + digit;
            } else if (integer >= SafeToScale && integer > (std::numeric_limits<uint64_t>::max() - digit) / 10) {
                beyondInt64 = true;
                bigInteger = double(integer) * 10 + digit;
            } else {
                integer = integer * 10 + digit;
            }
            m_in.skip();
            c = m_in.peek();
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
        m_in.skip();
        double divisor = 1;
        size_t place = 0;
        const FractionTable& table = fractionTable();
        c = readRequiredDigit();
        do {
            if (exact) m_number.push_back(char(c));
            divisor *= 10;
            fraction += place < FractionPlaces ? table.terms[place][c - u'0'] : (c - u'0') / divisor;
            ++place;
            m_in.skip();
            c = m_in.peek();
        } while (isDigit(c));
    }

    int32_t exponent = 0;
    bool negativeExponent = false;
    if (c == u'e' || c == u'E') {
        hasFractionOrExponent = true;
        m_in.skip();
        if (m_in.peek() == u'-') {
            negativeExponent = true;
            m_in.skip();
        }
        if (m_in.peek() == u'+') m_in.skip();
        c = readRequiredDigit();
        do {
            const int32_t digit = c - u'0';
            exponent = exponent > (std::numeric_limits<int32_t>::max() - digit) / 10 ? std::numeric_limits<int32_t>::max()
                                                                                      : exponent * 10 + digit;
            m_in.skip();
            c = m_in.peek();
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

template <class Source>
P<IVariant> CJsonParser::Reader<Source>::makeExactNumber(bool hasFractionOrExponent) const {
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

template <class Source>
int32_t CJsonParser::Reader<Source>::readRequiredDigit() {
    const int32_t c = m_in.peek();
    if (c == CParserBase::EndOfStream) m_in.raise(L"unexspected end of stream");
    if (!isDigit(c)) m_in.raise(L"not a number value");
    return c;
}

template <class Source>
P<IVariant> CJsonParser::Reader<Source>::parseBoolean() {
    char16_t text[4];
    for (char16_t& c : text) {
        const int32_t next = m_in.read();
        if (next == CParserBase::EndOfStream) m_in.raise(L"unexspected end of stream");
        c = char16_t(next);
    }
    if (isLetter(text[0], u't') && isLetter(text[1], u'r') && isLetter(text[2], u'u') && isLetter(text[3], u'e')) {
        if (!m_true) m_true = make<CVariantBoolean>(true);
        return m_true;
    }
    if (isLetter(text[0], u'f') && isLetter(text[1], u'a') && isLetter(text[2], u'l') && isLetter(text[3], u's')) {
        const int32_t last = m_in.read();
        if (last == CParserBase::EndOfStream) m_in.raise(L"unexspected end of stream");
        if (last == u'e') {
            if (!m_false) m_false = make<CVariantBoolean>(false);
            return m_false;
        }
    }
    m_in.raise(L"could not parse boolean value");
}

template <class Source>
void CJsonParser::Reader<Source>::parseNull() {
    expect(u'n');
    expect(u'u');
    expect(u'l');
    expect(u'l');
}

} // namespace zuno
