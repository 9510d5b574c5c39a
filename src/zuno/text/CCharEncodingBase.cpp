#include "text/CCharEncodingBase.h"

#include <cstring>

namespace zuno {

int32_t CCharEncodingBase::measure(const void* data) const {
    const char* bytes = static_cast<const char*>(data);
    if (m_unitSize == 1) return int32_t(std::strlen(bytes));
    static const char zero[4] = {};
    int32_t length = 0;
    while (std::memcmp(bytes + length, zero, size_t(m_unitSize)) != 0) length += m_unitSize;
    return length;
}

int32_t CCharEncodingBase::countChars(const void* data, int32_t byteLength) const {
    std::u32string chars;
    decode(data, byteLength, chars);
    return int32_t(chars.size());
}

} // namespace zuno
