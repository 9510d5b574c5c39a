#pragma once

#include "text/CCharEncodingBase.h"

namespace zuno {

// The process's narrow code page; platform code (win32/, posix/CCPCharEncoding.cpp).
class CCPCharEncoding : public CCharEncodingBase {
public:
    CCPCharEncoding();
    void decode(const void* data, int32_t byteLength, std::u32string& out) const override;
    void encode(const char32_t* chars, size_t count, std::string& out) const override;

private:
    [[maybe_unused]] char32_t m_byteTable[256] = {};  // Windows: each byte's character, read once
};

} // namespace zuno
