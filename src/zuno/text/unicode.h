#pragma once

#include <string>

// Small Unicode helpers shared by the codecs, the text buffers, the formatter and the URIs:
// the one place each of these rules is written.
namespace zuno::unicode {

constexpr char32_t Replacement = 0xFFFD;

inline bool isSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }
inline bool isHighSurrogate(char32_t c) { return (c & 0xFFFFFC00) == 0xD800; }
inline bool isLowSurrogate(char32_t c) { return (c & 0xFFFFFC00) == 0xDC00; }

// The character of a high and a low surrogate.
inline char32_t combineSurrogates(char32_t high, char32_t low) {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

// `c` when it is a Unicode scalar value, otherwise U+FFFD: what the text objects read for
// lone surrogates and values above U+10FFFF.
inline char32_t toScalarValue(char32_t c) { return isSurrogate(c) || c > 0x10FFFF ? Replacement : c; }

// Writes `c` (below U+110000) as one 16-bit unit or a surrogate pair at `out`; returns the
// end of what was written.
template <class Unit>
Unit* encodeUTF16(char32_t c, Unit* out) {
    if (c < 0x10000) {
        *out++ = Unit(c);
    } else {
        c -= 0x10000;
        *out++ = Unit(0xD800 + (c >> 10));
        *out++ = Unit(0xDC00 + (c & 0x3FF));
    }
    return out;
}

// Writes the UTF-8 bytes of `c` (U+FFFD for a value that is no scalar value) to `out`,
// which has room for four; returns how many were written.
inline size_t encodeUTF8(char32_t c, char* out) {
    c = toScalarValue(c);
    if (c < 0x80) {
        out[0] = char(c);
        return 1;
    }
    if (c < 0x800) {
        out[0] = char(0xC0 | (c >> 6));
        out[1] = char(0x80 | (c & 0x3F));
        return 2;
    }
    if (c < 0x10000) {
        out[0] = char(0xE0 | (c >> 12));
        out[1] = char(0x80 | ((c >> 6) & 0x3F));
        out[2] = char(0x80 | (c & 0x3F));
        return 3;
    }
    out[0] = char(0xF0 | (c >> 18));
    out[1] = char(0x80 | ((c >> 12) & 0x3F));
    out[2] = char(0x80 | ((c >> 6) & 0x3F));
    out[3] = char(0x80 | (c & 0x3F));
    return 4;
}

// Calls `sink` with each character of wide text, as the wide text objects read it: a
// surrogate pair is one character (where wchar_t has 16 bits), anything else that is no
// scalar value is U+FFFD.
template <class Sink>
void forEachWideChar(const wchar_t* text, size_t count, Sink sink) {
    for (size_t i = 0; i < count; ++i) {
        char32_t c = char32_t(text[i]);
        if (sizeof(wchar_t) == 2 && isHighSurrogate(c) && i + 1 < count && isLowSurrogate(char32_t(text[i + 1])))
            c = combineSurrogates(c, char32_t(text[++i]));
        sink(toScalarValue(c));
    }
}

// The UTF-8 form of wide text, in `out` (replacing what it held): its exact length is
// measured first, so that the text is written once into a buffer of the right size.
inline void wideToUTF8(const wchar_t* text, size_t count, std::string& out) {
    size_t length = 0;
    forEachWideChar(text, count, [&](char32_t c) { length += c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4; });
    out.resize(length);
    char* bytes = &out[0];
    forEachWideChar(text, count, [&](char32_t c) {
        if (c < 0x80) *bytes++ = char(c);
        else bytes += encodeUTF8(c, bytes);
    });
}

// The value of a hexadecimal digit (either case), or -1 for any other character.
inline int hexDigitValue(char32_t c) {
    if (c >= U'0' && c <= U'9') return int(c - U'0');
    if (c >= U'A' && c <= U'F') return int(c - U'A') + 10;
    if (c >= U'a' && c <= U'f') return int(c - U'a') + 10;
    return -1;
}

// The upper-case hexadecimal digit of the low four bits of `value`.
inline char upperHexDigit(unsigned value) { return "0123456789ABCDEF"[value & 0xF]; }

// Appends one code unit's bytes in the machine's byte order.
template <class Unit>
void appendUnit(std::string& out, Unit unit) {
    out.append(reinterpret_cast<const char*>(&unit), sizeof unit);
}

} // namespace zuno::unicode
