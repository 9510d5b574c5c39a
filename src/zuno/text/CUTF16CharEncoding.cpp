#include "text/CUTF16CharEncoding.h"
#include "text/unicode.h"

#include <cstring>

namespace zuno {

using namespace unicode;

namespace {

// Calls `sink` with each character of the UTF-16 units.
template <class Sink>
void walkUTF16(const char* bytes, size_t count, Sink sink) {
    auto unitAt = [&](size_t i) {
        char16_t unit;
        std::memcpy(&unit, bytes + 2 * i, 2);
        return unit;
    };
    for (size_t i = 0; i < count; ++i) {
        const char16_t unit = unitAt(i);
        if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < count) {
            const char16_t next = unitAt(i + 1);
            if (next >= 0xDC00 && next <= 0xDFFF) {
                sink(0x10000 + ((char32_t(unit) - 0xD800) << 10) + (next - 0xDC00));
                ++i;
                continue;
            }
        }
        sink(isSurrogate(unit) ? Replacement : char32_t(unit));
    }
}

} // namespace

int32_t CUTF16CharEncoding::countChars(const void* data, int32_t byteLength) const {
    int32_t count = 0;
    walkUTF16(static_cast<const char*>(data), size_t(byteLength) / 2, [&](char32_t) { ++count; });
    return count;
}

void CUTF16CharEncoding::decode(const void* data, int32_t byteLength, std::u32string& out) const {
    out.reserve(out.size() + size_t(byteLength) / 2);
    walkUTF16(static_cast<const char*>(data), size_t(byteLength) / 2, [&](char32_t c) { out.push_back(c); });
}

void CUTF16CharEncoding::encode(const char32_t* chars, size_t count, std::string& out) const {
    out.reserve(out.size() + 2 * count);
    for (size_t i = 0; i < count; ++i) {
        char32_t c = chars[i];
        if (isSurrogate(c) || c > 0x10FFFF) c = Replacement;
        if (c < 0x10000) {
            appendUnit(out, char16_t(c));
        } else {
            c -= 0x10000;
            appendUnit(out, char16_t(0xD800 + (c >> 10)));
            appendUnit(out, char16_t(0xDC00 + (c & 0x3FF)));
        }
    }
}

} // namespace zuno
