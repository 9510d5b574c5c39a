#include <zuno/CObjectError.h>
#include <zuno/CStringFormat.h>

#include "text/runtimePrintf.h"
#include "text/unicode.h"

#include <algorithm>
#include <charconv>
#include <cmath>
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
    if (!m_finished) m_finished = m_result.detachString();
    return *m_finished;
}

// The format text always ends in a NUL (text objects are terminated), so the scanner reads
// ahead without bounds checks: a NUL is never a flag, digit or conversion.
void CStringFormat::goToNextFormatField() {
    m_kind = FieldKind::None;
    m_conversion = 0;
    m_precision = -1;
    m_width = 0;
    m_flagCount = 0;
    m_zeroPad = m_leftJustify = m_alternate = m_plusSign = m_spaceSign = false;
    m_widthPending = m_precisionPending = false;

    const wchar_t* const end = m_text + m_length;
    const wchar_t* p = m_text + m_position;
    for (;;) {
        const wchar_t* const literal = p;
        while (p != end && *p != L'%') ++p;
        m_result.append(literal, size_t(p - literal));
        if (p == end) {
            m_position = m_length;
            return;
        }
        if (p + 1 != end && p[1] == L'%') {
            m_result.append(L'%');
            p += 2;
            continue;
        }
        m_position = size_t(p + 1 - m_text);
        readFieldSpecification();
        return;
    }
}

void CStringFormat::readFieldSpecification() {
    const wchar_t* p = m_text + m_position;
    for (;; ++p) {
        switch (*p) {
        case L'0': m_zeroPad = true; break;
        case L'-': m_leftJustify = true; break;
        case L'#': m_alternate = true; break;
        case L'+': m_plusSign = true; break;
        case L' ': m_spaceSign = true; break;
        default: goto flagsRead;
        }
        if (++m_flagCount > 5) fail(GoToNextFormatField, L"too many field flags specified in '");
    }
flagsRead:
    if (*p == L'*') {
        m_widthPending = true;
        ++p;
    } else {
        m_width = readNumber(p);
    }
    if (*p == L'.') {
        if (*++p == L'*') {
            m_precisionPending = true;
            ++p;
        } else {
            m_precision = readNumber(p);
        }
    }

    switch (*p) {
    case L'L': case L'h': case L'j': case L'l': case L't': case L'z':
        ++p;
        break;
    case L'I':
        ++p;
        if (p[0] == L'6' && p[1] == L'4') p += 2;
        break;
    default: break;
    }

    m_conversion = *p;
    switch (m_conversion) {
    case L'c': case L'C': m_kind = FieldKind::Character; break;
    case L'd': case L'i': case L'o': case L'u': case L'x': case L'X': m_kind = FieldKind::Integer; break;
    case L'e': case L'E': case L'f': case L'g': case L'G': m_kind = FieldKind::FloatingPoint; break;
    case L's': case L'S': m_kind = FieldKind::Text; break;
    default: fail(GoToNextFormatField, InvalidFormat);  // (the NUL at the end of the text as well)
    }
    m_position = size_t(p + 1 - m_text);
}

// A width or precision written as digits; one above the bound is a malformed field.
int32_t CStringFormat::readNumber(const wchar_t*& p) const {
    int32_t number = 0;
    for (; *p >= L'0' && *p <= L'9'; ++p) {
        number = number * 10 + int32_t(*p - L'0');
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

    // Written straight into the result: padding, sign, prefix, zeros, digits, padding.
    const size_t length = leading + (sign ? 1 : 0) + minimum + trailing;
    wchar_t* out = std::fill_n(m_result.extend(length), leading, L' ');
    if (sign) *out++ = wchar_t(sign);
    for (size_t i = 0; i < prefixLength; ++i) *out++ = wchar_t(prefix[i]);
    out = std::fill_n(out, minimum - prefixLength - digitCount, L'0');
    for (const char* digit = firstDigit; digit != digitsEnd; ++digit) *out++ = wchar_t(*digit);
    std::fill_n(out, trailing, L' ');
}

void CStringFormat::formatDouble(double value, const char* method) {
    if (!m_alternate && std::isfinite(value) && formatDoubleDirectly(value)) return;
    char fieldFormat[48];
    buildSpecification(fieldFormat, true, true, char(m_conversion));
    const size_t length = formatWithRuntime(fieldFormat, value, method);
    m_result.appendBytes(m_scratch, length);
}

// The shortest way to printf's output for a finite value without "#": std::to_chars writes
// exactly what printf writes for the conversion and precision in the C locale (the standard
// defines it so); the sign and the padding for the flags and width are added here.
bool CStringFormat::formatDoubleDirectly(double value) {
    std::chars_format style = std::chars_format::general;
    switch (m_conversion) {
    case L'e': case L'E': style = std::chars_format::scientific; break;
    case L'f': style = std::chars_format::fixed; break;
    default: break;
    }
    const int precision = m_precision < 0 ? 6 : m_precision;
    std::to_chars_result written = std::to_chars(m_scratch, m_scratch + m_scratchSize, value, style, precision);
    if (written.ec != std::errc()) {
        reserveScratch(size_t(precision) + 400);  // the longest: 309 digits of 1e308 before the point
        written = std::to_chars(m_scratch, m_scratch + m_scratchSize, value, style, precision);
        if (written.ec != std::errc()) return false;
    }

    const char* digits = m_scratch;
    char sign = 0;
    if (*digits == '-') sign = *digits++;
    else if (m_plusSign) sign = '+';
    else if (m_spaceSign) sign = ' ';
    const size_t digitCount = size_t(written.ptr - digits);
    const size_t length = digitCount + (sign ? 1 : 0);
    const size_t padding = size_t(m_width) > length ? size_t(m_width) - length : 0;

    wchar_t* out = m_result.extend(length + padding);
    if (!m_leftJustify && !m_zeroPad) out = std::fill_n(out, padding, L' ');
    if (sign) *out++ = wchar_t(sign);
    if (!m_leftJustify && m_zeroPad) out = std::fill_n(out, padding, L'0');
    const bool upper = m_conversion == L'E' || m_conversion == L'G';
    for (size_t i = 0; i < digitCount; ++i) *out++ = upper && digits[i] == 'e' ? L'E' : wchar_t(digits[i]);
    if (m_leftJustify) std::fill_n(out, padding, L' ');
    return true;
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
