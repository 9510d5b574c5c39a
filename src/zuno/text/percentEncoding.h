#pragma once

#include <string>

// Percent-encoding of byte strings, as file URIs, mailto fields and trash entries use it.
namespace zuno {

// `text` with every byte percent-encoded ("%" and two upper-case hex digits) except ASCII
// letters, digits, "-._~" and the characters listed in `keep`.
std::string percentEncode(const std::string& text, const char* keep = "");

// `text` with each "%" and two hex digits replaced by that byte; other "%" stay as they are.
std::string percentDecode(const std::string& text);

} // namespace zuno
