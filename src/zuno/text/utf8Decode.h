#pragma once

#include "text/unicode.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace zuno {

// Decodes the character at `p` (which must be before `end`) and moves `p` past it. Input
// that is not well-formed UTF-8 gives U+FFFD for each maximal ill-formed part, as the
// framework's UTF-8 text objects read it.
inline char32_t decodeUTF8(const unsigned char*& p, const unsigned char* end) {
    const unsigned char lead = *p++;
    if (lead < 0x80) return lead;
    int extra;
    char32_t c;
    unsigned char low = 0x80, high = 0xBF;  // range of the first continuation byte
    if (lead >= 0xC2 && lead <= 0xDF) {
        extra = 1;
        c = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        extra = 2;
        c = lead & 0x0F;
        if (lead == 0xE0) low = 0xA0;   // no overlong forms
        if (lead == 0xED) high = 0x9F;  // no surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        extra = 3;
        c = lead & 0x07;
        if (lead == 0xF0) low = 0x90;
        if (lead == 0xF4) high = 0x8F;  // nothing above U+10FFFF
    } else {
        return unicode::Replacement;
    }
    for (int taken = 0; taken < extra; ++taken) {
        if (p == end || *p < low || *p > high) return unicode::Replacement;
        c = (c << 6) | (*p++ & 0x3F);
        low = 0x80;
        high = 0xBF;
    }
    return c;
}

// The start of the first part of the bytes that is not well-formed UTF-8 (a truncated or
// stray sequence, an overlong form, a surrogate, a value above U+10FFFF), or `end`: the first
// part that decodes as U+FFFD without being an encoded U+FFFD itself.
inline const unsigned char* findIllFormedUTF8(const unsigned char* p, const unsigned char* end) {
    while (p != end) {
        if (*p < 0x80) {
            ++p;
            continue;
        }
        const unsigned char* start = p;
        const bool encodedReplacement = end - p >= 3 && p[0] == 0xEF && p[1] == 0xBF && p[2] == 0xBD;
        if (decodeUTF8(p, end) == unicode::Replacement && !encodedReplacement) return start;
    }
    return end;
}

inline bool isWellFormedUTF8(const unsigned char* p, const unsigned char* end) {
    return findIllFormedUTF8(p, end) == end;
}

// The offset of the first ill-formed part of `text`, or its size when it is well-formed.
// XML parsers trust a sequence's lead byte and read past the end of a text that stops
// inside one, so XML texts are checked with this before a parser sees them.
inline size_t wellFormedUTF8Length(std::string_view text) {
    const auto* begin = reinterpret_cast<const unsigned char*>(text.data());
    return size_t(findIllFormedUTF8(begin, begin + text.size()) - begin);
}

inline bool isWellFormedUTF8(std::string_view text) { return wellFormedUTF8Length(text) == text.size(); }

// Decodes UTF-8 into wide characters at `out` (a surrogate pair for a character above
// U+FFFF where wchar_t has 16 bits) in one pass, as decodeUTF8 reads it, and returns the end
// of the output. `out` must have room for one unit per input byte, which always suffices.
// `chars` receives the number of characters (a pair counts once). Runs of ASCII are
// widened sixteen bytes at a time.
inline wchar_t* decodeUTF8ToWide(const unsigned char* p, const unsigned char* end, wchar_t* out, size_t& chars) {
    constexpr uint64_t HighBits = 0x8080808080808080ull;
    wchar_t* const start = out;
    size_t pairs = 0;
    while (p != end) {
        if (end - p >= 16) {
            uint64_t first, second;
            std::memcpy(&first, p, 8);
            std::memcpy(&second, p + 8, 8);
            if (((first | second) & HighBits) == 0) {
                for (int i = 0; i < 16; ++i) out[i] = wchar_t(p[i]);
                p += 16;
                out += 16;
                continue;
            }
            // The ASCII bytes in front of the first other one (the loads are little-endian
            // on every target, so the lowest set bit is the first byte).
            const uint64_t high = first & HighBits;
            const int ascii = high ? __builtin_ctzll(high) / 8 : 8 + __builtin_ctzll(second & HighBits) / 8;
            for (int i = 0; i < ascii; ++i) out[i] = wchar_t(p[i]);
            p += ascii;
            out += ascii;
        }
        if (*p < 0x80) {
            *out++ = wchar_t(*p++);
            continue;
        }
        const char32_t c = decodeUTF8(p, end);
        if (sizeof(wchar_t) == 2 && c >= 0x10000) {
            out = unicode::encodeUTF16(c, out);
            ++pairs;
        } else {
            *out++ = wchar_t(c);
        }
    }
    chars = size_t(out - start) - pairs;
    return out;
}

} // namespace zuno
