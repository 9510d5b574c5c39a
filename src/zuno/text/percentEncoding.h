#pragma once

#include "text/unicode.h"

#include <string>

// Percent-encoding of byte strings, as file URIs, mailto fields and trash entries use it,
// and the reading of one escape, which URIs share for their wide text.
namespace zuno {

// `text` with every byte percent-encoded ("%" and two upper-case hex digits) except ASCII
// letters, digits, "-._~" and the characters listed in `keep`.
std::string percentEncode(const std::string& text, const char* keep = "");

// `text` with each "%" and two hex digits replaced by that byte; other "%" stay as they are.
std::string percentDecode(const std::string& text);

// The byte of the escape "%" and two hex digits at `p`, or -1 when none begins there.
template <class Char>
int percentEscapeAt(const Char* p, const Char* end) {
    if (end - p < 3 || p[0] != Char('%')) return -1;
    const int high = unicode::hexDigitValue(char32_t(p[1]));
    const int low = high < 0 ? -1 : unicode::hexDigitValue(char32_t(p[2]));
    return low < 0 ? -1 : high * 16 + low;
}

} // namespace zuno
