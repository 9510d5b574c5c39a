#include "text/utf8Decode.h"

#include <gtest/gtest.h>

#include <string>

using zuno::isWellFormedUTF8;
using zuno::wellFormedUTF8Length;

TEST(WellFormedUTF8, AcceptsCompleteSequencesOnly) {
    // Each text with the length of its well-formed start.
    const std::pair<std::string, size_t> cases[] = {
        {"", 0},
        {"plain <xml/>", 12},
        {"\xC2\x80 \xDF\xBF \xE0\xA0\x80 \xED\x9F\xBF \xEE\x80\x80 \xEF\xBF\xBF", 21},  // edges of 2 and 3 bytes
        {"\xF0\x90\x80\x80 \xF4\x8F\xBF\xBF \xEF\xBB\xBF \xEF\xBF\xBD", 17},           // edges of 4 bytes, a BOM, U+FFFD
        {std::string("a\0b", 3), 3},
        {"\xE4", 0},                  // truncated at the end
        {"<a/>\xF0\x9F\x98", 4},
        {"ab\xC3", 2},
        {"<a>\n\xF2\xBF", 4},
        {"\xE4x", 0},                 // truncated before a character
        {"x\x80", 1},                 // stray continuation
        {"\xBFx", 0},
        {"\xC0\xBC", 0},              // overlong
        {"\xC1\xBF", 0},
        {"\xE0\x9F\xBF", 0},
        {"\xF0\x8F\xBF\xBF", 0},
        {"\xED\xA0\x80", 0},          // surrogates
        {"\xED\xBF\xBF", 0},
        {"\xF4\x90\x80\x80", 0},      // above U+10FFFF
        {"\xF5\x80\x80\x80", 0},
        {"\xFF", 0},
        {"\xFE\xFF", 0},
    };
    for (const auto& [text, length] : cases) {
        EXPECT_EQ(wellFormedUTF8Length(text), length) << testing::PrintToString(text);
        EXPECT_EQ(isWellFormedUTF8(text), length == text.size()) << testing::PrintToString(text);
    }
}
