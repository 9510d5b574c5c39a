#pragma once

#include "text/CCharEncodingBase.h"

namespace zuno {

// char16_t units; an unpaired surrogate decodes as U+FFFD.
class CUTF16CharEncoding : public CCharEncodingBase {
public:
    CUTF16CharEncoding() : CCharEncodingBase(2) {}
    int32_t countChars(const void* data, int32_t byteLength) const override;
    void decode(const void* data, int32_t byteLength, std::u32string& out) const override;
    void encode(const char32_t* chars, size_t count, std::string& out) const override;
};

} // namespace zuno
