#pragma once

#include <zuno/CVariant.h>

#include <cstdint>
#include <typeinfo>

namespace zuno {

class CVariantInt64 final : public CVariant<int64_t> {
public:
    explicit CVariantInt64(int64_t value) : CVariant(value) {}
    Kind getKind() const override { return Kind::Int64; }
    int64_t getInt64() const override { return m_value; }
    uint64_t getUInt64() const override {
        if (m_value < 0) throwCastError(this, typeid(uint64_t));
        return uint64_t(m_value);
    }
    double getDouble() const override { return double(m_value); }
};

} // namespace zuno
