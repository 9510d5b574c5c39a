#include "text/CUTF32CharEncoding.h"
#include "text/unicode.h"

#include <cstring>

namespace zuno {

using namespace unicode;

void CUTF32CharEncoding::decode(const void* data, int32_t byteLength, std::u32string& out) const {
    const size_t count = size_t(byteLength) / 4;
    const size_t start = out.size();
    out.resize(start + count);
    std::memcpy(&out[start], data, count * 4);
    for (size_t i = start; i < out.size(); ++i) out[i] = toScalarValue(out[i]);
}

void CUTF32CharEncoding::encode(const char32_t* chars, size_t count, std::string& out) const {
    const size_t start = out.size();
    out.resize(start + 4 * count);
    char* target = &out[start];
    std::memcpy(target, chars, 4 * count);
    for (size_t i = 0; i < count; ++i) {
        if (toScalarValue(chars[i]) != chars[i]) std::memcpy(target + 4 * i, &Replacement, 4);
    }
}

} // namespace zuno
