#pragma once

#include <zuno/CVariant.h>

namespace zuno {

class CVariantDouble final : public CVariant<double> {
public:
    explicit CVariantDouble(double value) : CVariant(value) {}
    Kind getKind() const override { return Kind::Double; }
    double getDouble() const override { return m_value; }
};

} // namespace zuno
