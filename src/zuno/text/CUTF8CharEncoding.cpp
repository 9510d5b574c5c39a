#include "text/CUTF8CharEncoding.h"
#include "text/unicode.h"
#include "text/utf8Decode.h"

namespace zuno {

using namespace unicode;

namespace {

// Calls `sink` with each character of the UTF-8 bytes.
template <class Sink>
void walkUTF8(const unsigned char* p, const unsigned char* end, Sink sink) {
    while (p < end) sink(decodeUTF8(p, end));
}

} // namespace

int32_t CUTF8CharEncoding::countChars(const void* data, int32_t byteLength) const {
    const auto* p = static_cast<const unsigned char*>(data);
    int32_t count = 0;
    walkUTF8(p, p + byteLength, [&](char32_t) { ++count; });
    return count;
}

void CUTF8CharEncoding::decode(const void* data, int32_t byteLength, std::u32string& out) const {
    const auto* p = static_cast<const unsigned char*>(data);
    out.reserve(out.size() + size_t(byteLength));
    walkUTF8(p, p + byteLength, [&](char32_t c) { out.push_back(c); });
}

void CUTF8CharEncoding::encode(const char32_t* chars, size_t count, std::string& out) const {
    out.reserve(out.size() + count);
    for (size_t i = 0; i < count; ++i) {
        if (chars[i] < 0x80) {
            out.push_back(char(chars[i]));
            continue;
        }
        char bytes[4];
        out.append(bytes, encodeUTF8(chars[i], bytes));
    }
}

} // namespace zuno
