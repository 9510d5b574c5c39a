#include "isWellFormedUTF8.h"

#include <gtest/gtest.h>

#include <string>

using mailer::isWellFormedUTF8;

TEST(WellFormedUTF8, AcceptsCompleteSequencesOnly) {
    const std::pair<std::string, bool> cases[] = {
        {"", true},
        {"plain <xml/>", true},
        {"\xC2\x80 \xDF\xBF \xE0\xA0\x80 \xED\x9F\xBF \xEE\x80\x80 \xEF\xBF\xBF", true},  // edges of 2 and 3 bytes
        {"\xF0\x90\x80\x80 \xF4\x8F\xBF\xBF \xEF\xBB\xBF", true},                         // edges of 4 bytes, a BOM
        {std::string("a\0b", 3), true},
        {"\xE4", false},                  // truncated at the end
        {"\xF0\x9F\x98", false},
        {"ab\xC3", false},
        {"\xE4x", false},                 // truncated before a character
        {"\x80", false},                  // stray continuation
        {"\xBFx", false},
        {"\xC0\xBC", false},              // overlong
        {"\xC1\xBF", false},
        {"\xE0\x9F\xBF", false},
        {"\xF0\x8F\xBF\xBF", false},
        {"\xED\xA0\x80", false},          // surrogates
        {"\xED\xBF\xBF", false},
        {"\xF4\x90\x80\x80", false},      // above U+10FFFF
        {"\xF5\x80\x80\x80", false},
        {"\xFF", false},
        {"\xFE\xFF", false},
    };
    for (const auto& [text, wellFormed] : cases) EXPECT_EQ(isWellFormedUTF8(text), wellFormed) << testing::PrintToString(text);
}
