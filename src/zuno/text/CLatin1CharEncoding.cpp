#include "text/CLatin1CharEncoding.h"

namespace zuno {

void CLatin1CharEncoding::decode(const void* data, int32_t byteLength, std::u32string& out) const {
    const auto* p = static_cast<const unsigned char*>(data);
    out.append(p, p + byteLength);
}

void CLatin1CharEncoding::encode(const char32_t* chars, size_t count, std::string& out) const {
    out.reserve(out.size() + count);
    for (size_t i = 0; i < count; ++i) out.push_back(chars[i] <= 0xFF ? char(chars[i]) : '?');
}

} // namespace zuno
