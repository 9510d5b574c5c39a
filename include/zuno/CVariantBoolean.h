#pragma once

#include <zuno/CVariant.h>

namespace zuno {

class CVariantBoolean final : public CVariant<bool> {
public:
    explicit CVariantBoolean(bool value) : CVariant(value) {}
    Kind getKind() const override { return Kind::Boolean; }
    bool getBoolean() const override { return m_value; }
};

} // namespace zuno
