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
        if (isHighSurrogate(unit) && i + 1 < count) {
            const char16_t next = unitAt(i + 1);
            if (isLowSurrogate(next)) {
                sink(combineSurrogates(unit, next));
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
        char16_t units[2];
        const char16_t* end = encodeUTF16(toScalarValue(chars[i]), units);
        for (const char16_t* unit = units; unit != end; ++unit) appendUnit(out, *unit);
    }
}

} // namespace zuno
