#pragma once

#include <zuno/CVariant.h>
#include <zuno/String.h>

#include <utility>

namespace zuno {

class CVariantString final : public CVariant<String> {
public:
    explicit CVariantString(String value) : CVariant(std::move(value)) {}
    Kind getKind() const override { return Kind::String; }
    String getString() const override { return m_value; }
};

} // namespace zuno
