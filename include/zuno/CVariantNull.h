#pragma once

#include <zuno/CObject.h>
#include <zuno/IVariant.h>

namespace zuno {

class CVariantNull final : public CObject, public IVariant, public CSmallObject {
public:
    Kind getKind() const override { return Kind::Null; }
};

} // namespace zuno
