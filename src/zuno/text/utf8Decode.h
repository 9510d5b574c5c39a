#pragma once

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
        return 0xFFFD;
    }
    for (int taken = 0; taken < extra; ++taken) {
        if (p == end || *p < low || *p > high) return 0xFFFD;
        c = (c << 6) | (*p++ & 0x3F);
        low = 0x80;
        high = 0xBF;
    }
    return c;
}

} // namespace zuno
