#pragma once

#include <cstddef>
#include <string_view>

namespace zuno {

// The deepest element nesting in an XML text, counted the way a parser would meet it:
// start tags open a level, end tags and empty-element tags close it; comments, CDATA
// sections, processing instructions, declarations and quoted attribute values are
// skipped. Never underestimates for text that an XML parser reads as elements.
size_t xmlNestingDepth(std::string_view text);

} // namespace zuno
