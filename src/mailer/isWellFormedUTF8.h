#pragma once

#include <string_view>

namespace mailer {

// Whether the text is complete, well-formed UTF-8: no truncated or stray sequence, no
// overlong form, no surrogate, nothing above U+10FFFF. The XML parser trusts the lead byte
// of a sequence and reads past the end of a text that stops inside one, so the mailer file
// is checked before the parser sees it.
bool isWellFormedUTF8(std::string_view text);

} // namespace mailer
