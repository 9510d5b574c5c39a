#pragma once

#include <zuno/IVariant.h>
#include <zuno/P.h>

#include <typeinfo>

namespace zuno {

// `variant` as the variant class C, which is final: a variant that claims C's kind while
// being of another class raises CCastError. Cheaper than dynamic_cast on hot paths.
template <class C>
const C& variantCast(const IVariant& variant) {
    if (typeid(variant) != typeid(C)) throwCastError(&variant, typeid(C));
    return static_cast<const C&>(variant);
}

template <class C>
C& variantCast(IVariant& variant) {
    return const_cast<C&>(variantCast<C>(static_cast<const IVariant&>(variant)));
}

} // namespace zuno
