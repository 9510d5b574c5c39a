#pragma once

#include "text/CCharEncodingBase.h"

namespace zuno {

// Strict UTF-8: overlong forms, surrogates and values above U+10FFFF decode as U+FFFD, one
// per maximal invalid subsequence.
class CUTF8CharEncoding : public CCharEncodingBase {
public:
    CUTF8CharEncoding() : CCharEncodingBase(1) {}
    int32_t countChars(const void* data, int32_t byteLength) const override;
    void decode(const void* data, int32_t byteLength, std::u32string& out) const override;
    void encode(const char32_t* chars, size_t count, std::string& out) const override;
};

} // namespace zuno
