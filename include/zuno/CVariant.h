#pragma once

#include <zuno/CObject.h>
#include <zuno/CSmallObject.h>
#include <zuno/IVariant.h>

#include <utility>

namespace zuno {

// The value-holding base of the scalar variants. The value is fixed at construction.
// Variants take their memory from CSmallObject: parsing makes very many of them at once.
template <class T>
class CVariant : public CObject, public IVariant, public CSmallObject {
public:
    explicit CVariant(T value) : m_value(std::move(value)) {}
    const T& getValue() const { return m_value; }

protected:
    const T m_value;
};

} // namespace zuno
