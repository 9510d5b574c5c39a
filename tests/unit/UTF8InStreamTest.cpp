#include <zuno/CUTF8InStream.h>
#include <zuno/String.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using namespace zuno;

namespace {

// The UTF-16 units of UTF-8 text as the framework's text objects read it.
std::u16string unitsOf(const std::string& utf8) {
    std::u16string units;
    for (char32_t c : String::fromUTF8(utf8).getChars()) {
        if (c < 0x10000) {
            units.push_back(char16_t(c));
        } else {
            units.push_back(char16_t(0xD800 + ((c - 0x10000) >> 10)));
            units.push_back(char16_t(0xDC00 + ((c - 0x10000) & 0x3FF)));
        }
    }
    return units;
}

// Long enough for several windows, with four-byte characters and ill-formed bytes that
// fall on every offset of a window's end.
std::string sampleText() {
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        text += "ab\xc3\xa9";
        text += "\xf0\x9f\x98\x80";
        if (i % 7 == 0) text += "\xed\xa0\x80\xc3";  // a surrogate's encoding, a cut-off sequence
        if (i % 11 == 0) text += "\xf0\x9f";
    }
    return text;
}

std::u16string toUnits(const std::string& bytes) {
    std::u16string units(bytes.size() / 2, u'\0');
    std::memcpy(&units[0], bytes.data(), units.size() * 2);
    return units;
}

} // namespace

TEST(UTF8InStream, ReadsTheUnitsTheTextObjectsReadInPiecesOfAnySize) {
    const std::string text = sampleText();
    const std::u16string expected = unitsOf(text);
    for (int piece : {1, 3, 8, 1000, 1 << 20}) {
        CUTF8InStream stream(text);
        std::string bytes;
        std::string buffer(size_t(piece), '\0');
        for (int32_t count; (count = stream.read(&buffer[0], piece)) > 0;) bytes.append(buffer, 0, size_t(count));
        EXPECT_EQ(bytes.size(), expected.size() * 2) << piece;
        EXPECT_TRUE(toUnits(bytes) == expected) << piece;
    }
}

TEST(UTF8InStream, PeekSkipAndWindowsAgree) {
    const std::string text = sampleText();
    const std::u16string expected = unitsOf(text);
    CUTF8InStream stream(text);

    // A peek far beyond one window sees everything without consuming it.
    std::string all(expected.size() * 2 + 10, '\0');
    ASSERT_EQ(stream.peek(&all[0], int32_t(all.size())), int32_t(expected.size() * 2));
    all.resize(expected.size() * 2);
    EXPECT_TRUE(toUnits(all) == expected);

    // Windows and skips walk the same units, an odd byte at a time as well.
    std::string walked;
    for (int step = 0;; ++step) {
        int32_t size = 0;
        const char* window = static_cast<const char*>(stream.peekBuffered(size));
        if (size == 0) break;
        const int32_t take = std::min(size, step % 2 ? 3 : 5000);
        walked.append(window, size_t(take));
        ASSERT_EQ(stream.skip(take), take);
    }
    EXPECT_TRUE(toUnits(walked) == expected);
    char rest;
    EXPECT_EQ(stream.read(&rest, 1), 0);
}
