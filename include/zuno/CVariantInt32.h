#pragma once

#include <zuno/CVariant.h>

#include <cstdint>
#include <typeinfo>

namespace zuno {

class CVariantInt32 final : public CVariant<int64_t> {
public:
    explicit CVariantInt32(int32_t value) : CVariant(value) {}
    Kind getKind() const override { return Kind::Int32; }
    int64_t getInt64() const override { return m_value; }
    uint64_t getUInt64() const override {
        if (m_value < 0) throwCastError(this, typeid(uint64_t));
        return uint64_t(m_value);
    }
    double getDouble() const override { return double(m_value); }
    int32_t getValue() const { return int32_t(m_value); }
};

} // namespace zuno
