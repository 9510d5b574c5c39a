#include "isWellFormedUTF8.h"

namespace mailer {

namespace {

// Length of the sequence at `i`, or 0 when it is not a complete, well-formed one.
size_t sequenceLength(std::string_view text, size_t i) {
    const unsigned char lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) return 1;
    size_t length;
    unsigned char low = 0x80, high = 0xBF;  // range of the first continuation byte
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0) low = 0xA0;   // overlong
        if (lead == 0xED) high = 0x9F;  // surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0) low = 0x90;   // overlong
        if (lead == 0xF4) high = 0x8F;  // above U+10FFFF
    } else {
        return 0;
    }
    if (text.size() - i < length) return 0;
    for (size_t k = 1; k < length; ++k) {
        const unsigned char next = static_cast<unsigned char>(text[i + k]);
        if (next < low || next > high) return 0;
        low = 0x80;
        high = 0xBF;
    }
    return length;
}

} // namespace

bool isWellFormedUTF8(std::string_view text) {
    for (size_t i = 0; i < text.size();) {
        const size_t length = sequenceLength(text, i);
        if (length == 0) return false;
        i += length;
    }
    return true;
}

} // namespace mailer
