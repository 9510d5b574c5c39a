#pragma once

#include <zuno/CVariant.h>

#include <cstdint>

namespace zuno {

class CVariantInt64 final : public CVariant<int64_t> {
public:
    explicit CVariantInt64(int64_t value) : CVariant(value) {}
    Kind getKind() const override { return Kind::Int64; }
};

} // namespace zuno
