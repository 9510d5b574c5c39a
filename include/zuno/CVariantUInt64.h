#pragma once

#include <zuno/CVariant.h>

#include <cstdint>
#include <typeinfo>

namespace zuno {

// Holds its value in the shared 64-bit integer base, bit for bit.
class CVariantUInt64 final : public CVariant<int64_t> {
public:
    explicit CVariantUInt64(uint64_t value) : CVariant(int64_t(value)) {}
    Kind getKind() const override { return Kind::UInt64; }
    uint64_t getValue() const { return uint64_t(m_value); }
    int64_t getInt64() const override {
        if (m_value < 0) throwCastError(this, typeid(int64_t));  // above the signed range
        return m_value;
    }
    uint64_t getUInt64() const override { return uint64_t(m_value); }
    double getDouble() const override { return double(uint64_t(m_value)); }
};

} // namespace zuno
