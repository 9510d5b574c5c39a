#include <zuno/CObjectError.h>
#include <zuno/CStringFormat.h>

#include "text/runtimePrintf.h"
#include "text/unicode.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string>

namespace zuno {

namespace {

const char* const GoToNextFormatField = "CStringFormat::goToNextFormatField";
const char* const DoInt = "CStringFormat::doInt";
const char* const DoDouble = "CStringFormat::doDouble";
const char* const DoChar = "CStringFormat::doChar";
const char* const DoString = "CStringFormat::doString";
const wchar_t* const ArgumentMismatch = L"argument does not match the field's format specification for '";
const wchar_t* const InvalidFormat = L"invalid format string in '";

constexpr int32_t MaxInt32 = std::numeric_limits<int32_t>::max();
constexpr int32_t MaxFieldSize = CStringFormat::MaxFieldSize;

const char UpperDigits[] = "0123456789ABCDEF";
const char LowerDigits[] = "0123456789abcdef";

// Writes the digits of `value` in front of `end`, none for zero; returns the first.
// The base is a constant, so that the divisions become multiplications and shifts.
template <unsigned Base>
char* writeDigits(char* end, uint64_t value, const char* digitChars) {
    while (value != 0) {
        *--end = digitChars[value % Base];
        value /= Base;
    }
    return end;
}

// A pushed width or precision: negative values give 0; -1 when it is above the bound.
int32_t toFieldSize(int64_t value, bool isSigned) {
    if (isSigned && value < 0) return 0;
    return uint64_t(value) > uint64_t(MaxFieldSize) ? -1 : int32_t(value);
}

// The character of a pushed integer; values outside Unicode give U+FFFD.
char32_t toCharacter(int64_t value, bool isSigned) {
    if ((isSigned && value < 0) || uint64_t(value) > 0x10FFFF) return unicode::Replacement;
    return char32_t(value);
}

// Appends at most `limit` characters (all when negative) of wide text as UTF-8; returns
// how many were appended. Invalid code units become U+FFFD, as the text objects read them.
int32_t appendAsUTF8(std::string& out, const wchar_t* text, size_t count, int32_t limit) {
    size_t room = 0;  // at most four bytes per character, one for ASCII
    for (size_t i = 0; i < count; ++i) room += text[i] < 0x80 ? 1 : 4;
    const size_t start = out.size();
    out.resize(start + room);
    char* bytes = &out[start];
    int32_t chars = 0;
    for (size_t i = 0; i < count && (limit < 0 || chars < limit); ++i, ++chars) {
        char32_t c = char32_t(text[i]);
        if (sizeof(wchar_t) == 2 && unicode::isHighSurrogate(c) && i + 1 < count &&
            unicode::isLowSurrogate(char32_t(text[i + 1]))) {
            c = unicode::combineSurrogates(c, char32_t(text[++i]));
        }
        bytes += unicode::encodeUTF8(c, bytes);
    }
    out.resize(size_t(bytes - out.data()));
    return chars;
}

char* writeDecimal(char* out, int32_t value) {
    return std::to_chars(out, out + 11, value).ptr;
}

} // namespace

CStringFormat::CStringFormat(const String& format) {
    const String wide = format.isNull() ? String::empty() : format.toWide();
    m_format = wide.object();
    m_text = wide.wc_str();
    m_length = size_t(wide->getByteLength()) / sizeof(wchar_t);
    goToNextFormatField();
}

CStringFormat::CStringFormat(const wchar_t* format) : m_text(format ? format : L"") {
    m_length = std::char_traits<wchar_t>::length(m_text);
    goToNextFormatField();
}

CStringFormat& CStringFormat::doInt(int64_t value, bool isSigned) {
    pushInteger(value, isSigned, DoInt);
    return *this;
}

CStringFormat& CStringFormat::doDouble(double value) {
    checkNoPendingWidth(DoDouble);
    if (m_kind != FieldKind::FloatingPoint) fail(DoDouble, ArgumentMismatch);
    formatDouble(value, DoDouble);
    goToNextFormatField();
    return *this;
}

CStringFormat& CStringFormat::doChar(char32_t character) {
    if (m_kind == FieldKind::Integer || m_widthPending || m_precisionPending) {
        pushInteger(int64_t(character), true, DoChar);
        return *this;
    }
    if (m_kind != FieldKind::Character) fail(DoChar, ArgumentMismatch);
    if (character > 127) {
        formatText(String::fromChar(character), DoChar);
    } else {
        formatCharacter(int(character), DoChar);
    }
    goToNextFormatField();
    return *this;
}

CStringFormat& CStringFormat::doString(const String& text) {
    checkNoPendingWidth(DoString);
    if (m_kind != FieldKind::Text) fail(DoString, ArgumentMismatch);
    formatText(text, DoString);
    goToNextFormatField();
    return *this;
}

String CStringFormat::getResult() {
    if (m_kind != FieldKind::None) {
        throw CInvalidObjectStateError(this, nullptr,
                                       String(L"CStringFormat: not all parameters have been pushed in yet"));
    }
    if (!m_finished) m_finished = m_result.detachString().object();
    return String(m_finished);
}

void CStringFormat::goToNextFormatField() {
    m_kind = FieldKind::None;
    m_conversion = 0;
    m_precision = -1;
    m_width = 0;
    m_flagCount = 0;
    m_zeroPad = m_leftJustify = m_alternate = m_plusSign = m_spaceSign = false;
    m_widthPending = m_precisionPending = false;

    for (;;) {
        const wchar_t* begin = m_text + m_position;
        const wchar_t* end = m_text + m_length;
        const wchar_t* percent = std::find(begin, end, L'%');
        m_result.append(begin, size_t(percent - begin));
        m_position = size_t(percent - m_text);
        if (percent == end) return;
        ++m_position;
        if (m_position < m_length && m_text[m_position] == L'%') {
            m_result.append(L'%');
            ++m_position;
            continue;
        }
        readFieldSpecification();
        return;
    }
}

void CStringFormat::readFieldSpecification() {
    auto next = [this]() -> wchar_t { return m_position < m_length ? m_text[m_position] : 0; };

    for (;; ++m_position) {
        bool* flag = nullptr;
        switch (next()) {
        case L'0': flag = &m_zeroPad; break;
        case L'-': flag = &m_leftJustify; break;
        case L'#': flag = &m_alternate; break;
        case L'+': flag = &m_plusSign; break;
        case L' ': flag = &m_spaceSign; break;
        default: break;
        }
        if (!flag) break;
        if (++m_flagCount > 5) fail(GoToNextFormatField, L"too many field flags specified in '");
        *flag = true;
    }

    if (next() == L'*') {
        m_widthPending = true;
        ++m_position;
    } else {
        m_width = readNumber();
    }
    if (next() == L'.') {
        ++m_position;
        if (next() == L'*') {
            m_precisionPending = true;
            ++m_position;
        } else {
            m_precision = readNumber();
        }
    }

    switch (next()) {
    case L'L': case L'h': case L'j': case L'l': case L't': case L'z':
        ++m_position;
        break;
    case L'I':
        ++m_position;
        if (m_position + 1 < m_length && m_text[m_position] == L'6' && m_text[m_position + 1] == L'4') m_position += 2;
        break;
    default: break;
    }

    m_conversion = next();
    switch (m_conversion) {
    case L'c': case L'C': m_kind = FieldKind::Character; break;
    case L'd': case L'i': case L'o': case L'u': case L'x': case L'X': m_kind = FieldKind::Integer; break;
    case L'e': case L'E': case L'f': case L'g': case L'G': m_kind = FieldKind::FloatingPoint; break;
    case L's': case L'S': m_kind = FieldKind::Text; break;
    default: fail(GoToNextFormatField, InvalidFormat);
    }
    ++m_position;
}

// A width or precision written as digits; one above the bound is a malformed field.
int32_t CStringFormat::readNumber() {
    int32_t number = 0;
    while (m_position < m_length && m_text[m_position] >= L'0' && m_text[m_position] <= L'9') {
        number = number * 10 + int32_t(m_text[m_position++] - L'0');
        if (number > MaxFieldSize) fail(GoToNextFormatField, InvalidFormat);
    }
    return number;
}

void CStringFormat::pushInteger(int64_t value, bool isSigned, const char* method) {
    if (m_widthPending || m_precisionPending) {
        const int32_t size = toFieldSize(value, isSigned);
        if (size < 0) fail(method, InvalidFormat);
        if (m_widthPending) {
            m_width = size;
            m_widthPending = false;
        } else {
            m_precision = size;
            m_precisionPending = false;
        }
        return;
    }
    switch (m_kind) {
    case FieldKind::Integer:
        formatInteger(value, isSigned);
        break;
    case FieldKind::FloatingPoint:
        formatDouble(isSigned ? double(value) : double(uint64_t(value)), method);
        break;
    case FieldKind::Character:
        if (isSigned ? value > 127 : uint64_t(value) > 127) {
            formatText(String::fromChar(toCharacter(value, isSigned)), method);
        } else {
            formatCharacter(int(value), method);
        }
        break;
    default:
        fail(method, ArgumentMismatch);
    }
    goToNextFormatField();
}

void CStringFormat::formatInteger(int64_t value, bool isSigned) {
    const bool decimal = m_conversion != L'o' && m_conversion != L'x' && m_conversion != L'X';
    const bool signedDecimal = isSigned && decimal;
    const bool negative = signedDecimal && value < 0;
    const uint64_t magnitude = negative ? 0 - uint64_t(value) : uint64_t(value);

    // The digits of the magnitude, right-aligned in `digits`; none for zero.
    char digits[24];
    char* const digitsEnd = digits + sizeof digits;
    const char* firstDigit = digitsEnd;
    switch (m_conversion) {
    case L'o': firstDigit = writeDigits<8>(digitsEnd, magnitude, UpperDigits); break;
    case L'x': firstDigit = writeDigits<16>(digitsEnd, magnitude, LowerDigits); break;
    case L'X': firstDigit = writeDigits<16>(digitsEnd, magnitude, UpperDigits); break;
    default: firstDigit = writeDigits<10>(digitsEnd, magnitude, UpperDigits); break;
    }
    const size_t digitCount = size_t(digitsEnd - firstDigit);
    size_t minimum = m_precision < 0 ? std::max<size_t>(digitCount, 1) : std::max<size_t>(digitCount, size_t(m_precision));

    const char* prefix = "";
    if (m_alternate && (m_conversion == L'x' || m_conversion == L'X')) prefix = m_conversion == L'X' ? "0X" : "0x";
    if (m_alternate && m_conversion == L'o') prefix = "0";
    const size_t prefixLength = std::char_traits<char>::length(prefix);
    minimum += prefixLength;

    char sign = 0;
    if (negative) sign = '-';
    else if (signedDecimal && m_plusSign) sign = '+';
    else if (signedDecimal && m_spaceSign) sign = ' ';

    const size_t width = size_t(m_width);
    size_t leading = 0;
    size_t trailing = 0;
    if (minimum < width) {
        if (m_leftJustify) trailing = width - minimum;
        else if (m_zeroPad) minimum = width;
        else leading = width - minimum;
    }

    reserveScratch(std::max(width, minimum) + 2);
    char* out = std::fill_n(m_scratch, leading, ' ');
    if (sign) *out++ = sign;
    out = std::copy(prefix, prefix + prefixLength, out);
    out = std::fill_n(out, minimum - prefixLength - digitCount, '0');
    out = std::copy(firstDigit, static_cast<const char*>(digitsEnd), out);
    out = std::fill_n(out, trailing, ' ');
    m_result.appendBytes(m_scratch, size_t(out - m_scratch));
}

void CStringFormat::formatDouble(double value, const char* method) {
    char fieldFormat[48];
    buildSpecification(fieldFormat, true, true, char(m_conversion));
    const size_t length = formatWithRuntime(fieldFormat, value, method);
    m_result.appendBytes(m_scratch, length);
}

void CStringFormat::formatCharacter(int value, const char* method) {
    if (!m_zeroPad) {  // what printf writes, without its fixed cost per call
        appendPadded(1, [&] { m_result.append(wchar_t(value)); });
        return;
    }
    char fieldFormat[48];
    buildSpecification(fieldFormat, false, false, 'c');
    const size_t length = formatWithRuntime(fieldFormat, value, method);
    m_result.appendBytes(m_scratch, length);
}

void CStringFormat::formatText(const String& text, const char* method) {
    m_kind = FieldKind::Text;
    // Wide text is read in place; other encodings are converted first.
    if (text.getEncoding() != Encoding::Wide) {
        formatText(text.toWide(), method);
        return;
    }
    const IString& wide = *text.object();
    if (!m_zeroPad) {
        appendWideText(static_cast<const wchar_t*>(wide.getData()), size_t(wide.getByteLength()) / sizeof(wchar_t));
        return;
    }
    m_textBytes.clear();
    const int32_t chars = appendAsUTF8(m_textBytes, static_cast<const wchar_t*>(wide.getData()),
                                       size_t(wide.getByteLength()) / sizeof(wchar_t), m_precision);

    // The C library counts the width in bytes; widen it by the bytes beyond one per character.
    const int32_t savedWidth = m_width;
    if (m_width > chars) {
        const int64_t byteWidth = int64_t(m_width) + int64_t(m_textBytes.size()) - chars;
        m_width = int32_t(std::min<int64_t>(byteWidth, MaxInt32));
    }
    char fieldFormat[48];
    buildSpecification(fieldFormat, false, false, 's');
    m_width = savedWidth;

    const size_t length = formatWithRuntime(fieldFormat, m_textBytes.c_str(), method);
    m_result.appendUTF8(m_scratch, length);
}

// Appends a field of `chars` characters written by `write`, padded with blanks to the width
// on the side the flags ask for, as printf pads character and string fields.
template <class Write>
void CStringFormat::appendPadded(int32_t chars, Write write) {
    const size_t padding = m_width > chars ? size_t(m_width - chars) : 0;
    if (!m_leftJustify) m_result.appendRepeated(L' ', padding);
    write();
    if (m_leftJustify) m_result.appendRepeated(L' ', padding);
}

// A string field's text, cut to the precision in characters (a surrogate pair is one) and,
// as printf reads it, at the first NUL.
void CStringFormat::appendWideText(const wchar_t* text, size_t units) {
    size_t taken = 0;
    int32_t chars = 0;
    while (taken < units && text[taken] != L'\0' && (m_precision < 0 || chars < m_precision)) {
        const bool pair = sizeof(wchar_t) == 2 && taken + 1 < units && unicode::isHighSurrogate(char32_t(text[taken])) &&
                          unicode::isLowSurrogate(char32_t(text[taken + 1]));
        taken += pair ? 2 : 1;
        ++chars;
    }
    appendPadded(chars, [&] { m_result.append(text, taken); });
}

template <class T>
size_t CStringFormat::formatWithRuntime(const char* fieldFormat, T value, const char* method) {
    int length = runtimePrintf(m_scratch, m_scratchSize, fieldFormat, value);
    if (length >= 0 && size_t(length) >= m_scratchSize) {
        reserveScratch(size_t(length) + 1);
        length = runtimePrintf(m_scratch, m_scratchSize, fieldFormat, value);
    }
    if (length < 0) fail(method, L"the C library could not format the field in '");
    return size_t(length);
}

void CStringFormat::buildSpecification(char* out, bool allFlags, bool withPrecision, char conversion) const {
    *out++ = '%';
    if (m_leftJustify) *out++ = '-';
    if (allFlags) {
        if (m_plusSign) *out++ = '+';
        if (m_spaceSign) *out++ = ' ';
        if (m_alternate) *out++ = '#';
        if (m_zeroPad) *out++ = '0';
    }
    if (m_width > 0) out = writeDecimal(out, m_width);
    if (withPrecision && m_precision >= 0) {
        *out++ = '.';
        out = writeDecimal(out, m_precision);
    }
    *out++ = conversion;
    *out = 0;
}

void CStringFormat::reserveScratch(size_t size) {
    if (m_scratchSize >= size) return;
    m_heapScratch.reset();
    m_heapScratch.reset(new char[size]);
    m_scratch = m_heapScratch.get();
    m_scratchSize = size;
}

void CStringFormat::checkNoPendingWidth(const char* method) const {
    if (m_widthPending) fail(method, L"expected integer value (field width) in '");
    if (m_precisionPending) fail(method, L"expected integer value (field precision) in '");
}

void CStringFormat::fail(const char* method, const wchar_t* message) const {
    const String format = m_format ? String(m_format) : String(m_text);
    throw CInvalidArgError(this, nullptr, String(method), String(message) + format + String(L"'"));
}

} // namespace zuno
