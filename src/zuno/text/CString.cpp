#include <zuno/CError.h>
#include <zuno/CObjectError.h>
#include <zuno/CString.h>

#include "text/unicode.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <limits>

namespace zuno {

namespace {

int32_t clampIndex(int32_t index, int32_t length) {
    return std::clamp(index, 0, length);
}

char32_t lowerCase(char32_t c) {
    return c <= 0xFFFF || sizeof(wint_t) > 2 ? char32_t(std::towlower(wint_t(c))) : c;
}

char32_t upperCase(char32_t c) {
    return c <= 0xFFFF || sizeof(wint_t) > 2 ? char32_t(std::towupper(wint_t(c))) : c;
}

std::u32string lowered(std::u32string chars) {
    for (char32_t& c : chars) c = lowerCase(c);
    return chars;
}

bool isSpace(char32_t c) {
    return (c <= 0xFFFF || sizeof(wint_t) > 2) && std::iswspace(wint_t(c));
}

int32_t toPosition(size_t found) {
    return found == std::u32string::npos ? -1 : int32_t(found);
}

// rfind's `from` as the standard library wants it: -1 (or past the end) means the end.
size_t lastStart(int32_t from) {
    return from < 0 ? std::u32string::npos : size_t(from);
}

int32_t sign(int value) {
    return (value > 0) - (value < 0);
}

// The text as ASCII for number parsing, without surrounding white space; false when it
// holds anything that cannot be part of a number.
bool numberText(const std::u32string& chars, std::string& out) {
    size_t begin = 0, end = chars.size();
    while (begin < end && isSpace(chars[begin])) ++begin;
    while (end > begin && isSpace(chars[end - 1])) --end;
    for (size_t i = begin; i < end; ++i) {
        if (chars[i] >= 0x80) return false;
        out.push_back(char(chars[i]));
    }
    if (!out.empty() && out[0] == '+') {
        out.erase(0, 1);
        if (!out.empty() && (out[0] == '+' || out[0] == '-')) return false;
    }
    return !out.empty();
}

template <class Number>
Number parseInteger(const std::u32string& chars) {
    std::string text;
    Number value{};
    if (numberText(chars, text)) {
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error == std::errc() && end == text.data() + text.size()) return value;
    }
    throw CParseError(L"Error parsing integer.");
}

} // namespace

CString::CString(const void* data, int32_t byteLength, int32_t mode, bool terminated, const ICharEncoding& encoding,
                 int32_t charCount)
    : m_encoding(&encoding) {
    const int32_t unit = encoding.getUnitSize();
    static const char32_t noText = 0;
    if (!data) {
        data = &noText;
        byteLength = 0;
        mode = Borrow;
        terminated = true;
    }
    if (byteLength < 0) {
        byteLength = encoding.measure(data);
        terminated = true;
    }
    byteLength -= byteLength % unit;
    m_byteLength = byteLength;
    if ((mode == Adopt || mode == Borrow) && terminated) {
        m_data = static_cast<const char*>(data);
        m_owned = mode == Adopt;
    } else {
        char* copy = static_cast<char*>(std::malloc(size_t(byteLength) + size_t(unit)));
        if (!copy) throw COutOfmemoryException();
        std::memcpy(copy, data, size_t(byteLength));
        std::memset(copy + byteLength, 0, size_t(unit));
        if (mode == Adopt) std::free(const_cast<void*>(data));
        m_data = copy;
        m_owned = true;
    }
    m_terminated = true;
    m_charCount = charCount >= 0 ? charCount : encoding.countChars(m_data, m_byteLength);
}

CString::~CString() {
    if (m_owned) std::free(const_cast<char*>(m_data));
}

int32_t CString::compareTo(const IComparable& other) const {
    const auto* text = dynamic_cast<const IString*>(&other);
    if (!text) throwCastError(&other, typeid(IString));
    return compare(String(P<IString>::share(const_cast<IString*>(text))));
}

std::u32string CString::getChars() const {
    std::u32string chars;
    m_encoding->decode(m_data, m_byteLength, chars);
    return chars;
}

char32_t CString::charAt(int32_t index) const {
    if (index < 0 || index >= m_charCount)
        throw CInvalidArgError(this, nullptr, L"charAt", L"index out of range");
    if (m_encoding->getUnitSize() == 4) {
        char32_t c;
        std::memcpy(&c, m_data + 4 * size_t(index), 4);
        return unicode::toScalarValue(c);
    }
    return getChars()[size_t(index)];
}

int32_t CString::compare(const String& other) const {
    const int result = getChars().compare(other.getChars());
    return sign(result);
}

int32_t CString::compareNoCase(const String& other) const {
    return sign(lowered(getChars()).compare(lowered(other.getChars())));
}

int32_t CString::collate(const String& other) const {
    const String mine = convertTo(Encoding::Wide);
    const String theirs = other.toWide();
    return sign(std::wcscoll(mine.wc_str(), theirs.wc_str()));
}

bool CString::equals(const String& other) const {
    const IString& text = *other.object();
    if (isNull() || text.isNull()) return isNull() == text.isNull();
    if (m_charCount != text.length()) return false;
    const auto* same = dynamic_cast<const CString*>(&text);
    if (same && same->m_encoding == m_encoding)
        return m_byteLength == same->m_byteLength && std::memcmp(m_data, same->m_data, size_t(m_byteLength)) == 0;
    return getChars() == text.getChars();
}

bool CString::equalsNoCase(const String& other) const {
    if (isNull() || other.isNull()) return isNull() == other.isNull();
    return lowered(getChars()) == lowered(other.getChars());
}

size_t CString::hash() const {
    // FNV-1a over the characters, so that equal texts in different encodings hash alike.
    uint64_t hash = 14695981039346656037ull;
    for (char32_t c : getChars()) {
        hash ^= c;
        hash *= 1099511628211ull;
    }
    return size_t(hash);
}

int32_t CString::findChar(char32_t c, int32_t from) const {
    return toPosition(getChars().find(c, size_t(std::max(from, 0))));
}

int32_t CString::find(const String& text, int32_t from) const {
    return toPosition(getChars().find(text.getChars(), size_t(std::max(from, 0))));
}

int32_t CString::rfindChar(char32_t c, int32_t from) const {
    return toPosition(getChars().rfind(c, lastStart(from)));
}

int32_t CString::rfind(const String& text, int32_t from) const {
    return toPosition(getChars().rfind(text.getChars(), lastStart(from)));
}

int32_t CString::findAnyOf(const String& chars, int32_t from) const {
    return toPosition(getChars().find_first_of(chars.getChars(), size_t(std::max(from, 0))));
}

int32_t CString::rfindAnyOf(const String& chars, int32_t from) const {
    return toPosition(getChars().find_last_of(chars.getChars(), lastStart(from)));
}

bool CString::startsWith(const String& prefix) const {
    const std::u32string mine = getChars(), theirs = prefix.getChars();
    return mine.compare(0, theirs.size(), theirs) == 0;
}

bool CString::endsWith(const String& suffix) const {
    const std::u32string mine = getChars(), theirs = suffix.getChars();
    return mine.size() >= theirs.size() && mine.compare(mine.size() - theirs.size(), theirs.size(), theirs) == 0;
}

bool CString::startsWithNoCase(const String& prefix) const {
    return String(toLower()).startsWith(prefix.toLower());
}

bool CString::endsWithNoCase(const String& suffix) const {
    return String(toLower()).endsWith(suffix.toLower());
}

String CString::substring(int32_t start, int32_t end) const {
    if (end < 0 || end > m_charCount) end = m_charCount;
    start = clampIndex(start, end);
    return String::fromChars(getChars().substr(size_t(start), size_t(end - start)));
}

String CString::concat(const String& other) const {
    if (other.isEmpty() && !isNull()) return convertTo(Encoding::Wide);
    return String::fromChars(getChars() + other.getChars());
}

String CString::toUpper() const {
    std::u32string chars = getChars();
    for (char32_t& c : chars) c = upperCase(c);
    return String::fromChars(chars);
}

String CString::toLower() const {
    return String::fromChars(lowered(getChars()));
}

String CString::trim() const {
    return String(trimLeft()).trimRight();
}

String CString::trimLeft() const {
    const std::u32string chars = getChars();
    size_t begin = 0;
    while (begin < chars.size() && isSpace(chars[begin])) ++begin;
    return String::fromChars(chars.substr(begin));
}

String CString::trimRight() const {
    std::u32string chars = getChars();
    while (!chars.empty() && isSpace(chars.back())) chars.pop_back();
    return String::fromChars(chars);
}

std::vector<String> CString::split(const String& separator) const {
    const std::u32string chars = getChars(), sep = separator.getChars();
    std::vector<String> pieces;
    if (sep.empty()) {
        pieces.push_back(String::fromChars(chars));
        return pieces;
    }
    size_t start = 0;
    for (size_t found; (found = chars.find(sep, start)) != std::u32string::npos; start = found + sep.size())
        pieces.push_back(String::fromChars(chars.substr(start, found - start)));
    pieces.push_back(String::fromChars(chars.substr(start)));
    return pieces;
}

String CString::replace(const String& from, const String& to) const {
    const std::u32string chars = getChars(), pattern = from.getChars(), replacement = to.getChars();
    if (pattern.empty()) return String::fromChars(chars);
    std::u32string result;
    size_t start = 0;
    for (size_t found; (found = chars.find(pattern, start)) != std::u32string::npos; start = found + pattern.size())
        result.append(chars, start, found - start).append(replacement);
    result.append(chars, start, std::u32string::npos);
    return String::fromChars(result);
}

int32_t CString::toInt32() const {
    return parseInteger<int32_t>(getChars());
}

int64_t CString::toInt64() const {
    return parseInteger<int64_t>(getChars());
}

uint64_t CString::toUInt64() const {
    return parseInteger<uint64_t>(getChars());
}

double CString::toDouble() const {
    std::string text;
    double value = 0;
    if (numberText(getChars(), text)) {
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error == std::errc() && end == text.data() + text.size()) return value;
    }
    throw CParseError(L"Error parsing floating point value.");
}

String CString::convertTo(Encoding encoding) const {
    if (encoding == getEncoding()) return String(P<IString>::share(const_cast<CString*>(this)));
    if (isNull()) return String::null(encoding);
    if (&zuno::getCharEncoding(encoding) == m_encoding)  // wide and UTF-16/32 share a codec
        return String(createString(encoding, m_data, m_byteLength, m_charCount));
    if (encoding == Encoding::Wide && getEncoding() == Encoding::UTF8)  // the common way in: one pass
        return String::fromUTF8ToWide(m_data, m_byteLength);
    if (encoding == Encoding::UTF8 && getEncoding() == Encoding::Wide) {
        std::string bytes;
        unicode::wideToUTF8(reinterpret_cast<const wchar_t*>(m_data), size_t(m_byteLength) / sizeof(wchar_t), bytes);
        return String(createString(encoding, bytes.data(), int32_t(bytes.size()), m_charCount));
    }
    return String::fromChars(getChars(), encoding);
}

P<IString> createString(Encoding encoding, const void* data, int32_t byteLength, int32_t charCount) {
    switch (encoding) {
    case Encoding::Wide: return make<CWCharString>(data, byteLength, CString::Copy, true, charCount);
    case Encoding::CodePage: return make<CCPString>(data, byteLength, CString::Copy, true, charCount);
    case Encoding::UTF8: return make<CUTF8String>(data, byteLength, CString::Copy, true, charCount);
    case Encoding::UTF16: return make<CUTF16String>(data, byteLength, CString::Copy, true, charCount);
    case Encoding::UTF32: return make<CUTF32String>(data, byteLength, CString::Copy, true, charCount);
    case Encoding::Latin1: break;
    }
    return make<CLatin1String>(data, byteLength, CString::Copy, true, charCount);
}

} // namespace zuno
