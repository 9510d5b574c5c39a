#pragma once

#include <zuno/CVariant.h>
#include <zuno/String.h>

namespace zuno {

class CVariantString final : public CVariant<String> {
public:
    explicit CVariantString(const String& value) : CVariant(value) {}
    Kind getKind() const override { return Kind::String; }
};

} // namespace zuno
