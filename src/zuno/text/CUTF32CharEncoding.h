#pragma once

#include "text/CCharEncodingBase.h"

namespace zuno {

// char32_t units; surrogates and values above U+10FFFF decode as U+FFFD.
class CUTF32CharEncoding : public CCharEncodingBase {
public:
    CUTF32CharEncoding() : CCharEncodingBase(4) {}
    int32_t countChars(const void*, int32_t byteLength) const override { return byteLength / 4; }
    void decode(const void* data, int32_t byteLength, std::u32string& out) const override;
    void encode(const char32_t* chars, size_t count, std::string& out) const override;
};

} // namespace zuno
