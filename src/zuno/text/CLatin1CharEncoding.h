#pragma once

#include "text/CCharEncodingBase.h"

namespace zuno {

// One byte per character; characters above U+00FF encode as "?".
class CLatin1CharEncoding : public CCharEncodingBase {
public:
    CLatin1CharEncoding() : CCharEncodingBase(1) {}
    int32_t countChars(const void*, int32_t byteLength) const override { return byteLength; }
    void decode(const void* data, int32_t byteLength, std::u32string& out) const override;
    void encode(const char32_t* chars, size_t count, std::string& out) const override;
};

} // namespace zuno
