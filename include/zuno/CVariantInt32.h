#pragma once

#include <zuno/CVariant.h>

#include <cstdint>

namespace zuno {

class CVariantInt32 final : public CVariant<int64_t> {
public:
    explicit CVariantInt32(int32_t value) : CVariant(value) {}
    Kind getKind() const override { return Kind::Int32; }
    int32_t getValue() const { return int32_t(m_value); }
};

} // namespace zuno
