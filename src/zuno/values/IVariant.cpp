#include <zuno/CVariantArray.h>
#include <zuno/CVariantBoolean.h>
#include <zuno/CVariantDouble.h>
#include <zuno/CVariantInt32.h>
#include <zuno/CVariantInt64.h>
#include <zuno/CVariantMap.h>
#include <zuno/CVariantString.h>
#include <zuno/CVariantUInt64.h>
#include <zuno/IVariant.h>

#include "values/variantCast.h"

#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace zuno {

bool IVariant::isNumber() const {
    const Kind kind = getKind();
    return kind == Kind::Int32 || kind == Kind::Int64 || kind == Kind::UInt64 || kind == Kind::Double;
}

bool IVariant::getBoolean() const {
    return variantCast<CVariantBoolean>(*this).getValue();
}

int64_t IVariant::getInt64() const {
    switch (getKind()) {
    case Kind::Int32: return variantCast<CVariantInt32>(*this).getValue();
    case Kind::Int64: return variantCast<CVariantInt64>(*this).getValue();
    case Kind::UInt64: {
        const uint64_t value = variantCast<CVariantUInt64>(*this).getValue();
        if (value <= uint64_t(std::numeric_limits<int64_t>::max())) return int64_t(value);
        break;
    }
    default: break;
    }
    throwCastError(this, typeid(int64_t));
}

uint64_t IVariant::getUInt64() const {
    if (getKind() == Kind::UInt64) return variantCast<CVariantUInt64>(*this).getValue();
    const int64_t value = getInt64();
    if (value < 0) throwCastError(this, typeid(uint64_t));
    return uint64_t(value);
}

double IVariant::getDouble() const {
    switch (getKind()) {
    case Kind::Double: return variantCast<CVariantDouble>(*this).getValue();
    case Kind::Int32: return variantCast<CVariantInt32>(*this).getValue();
    case Kind::Int64: return double(variantCast<CVariantInt64>(*this).getValue());
    case Kind::UInt64: return double(variantCast<CVariantUInt64>(*this).getValue());
    default: throwCastError(this, typeid(double));
    }
}

String IVariant::getString() const {
    return variantCast<CVariantString>(*this).getValue();
}

CVariantArray& IVariant::asArray() { return variantCast<CVariantArray>(*this); }
const CVariantArray& IVariant::asArray() const { return variantCast<CVariantArray>(*this); }
CVariantMap& IVariant::asMap() { return variantCast<CVariantMap>(*this); }
const CVariantMap& IVariant::asMap() const { return variantCast<CVariantMap>(*this); }

namespace {

// A container not yet copied, and the empty copy that receives its elements.
struct PendingCopy {
    const IVariant* source;
    IVariant* target;
};

// The copy of an element: a new empty container (queued for filling) or the shared scalar.
P<IVariant> copyElement(const P<IVariant>& element, std::vector<PendingCopy>& pending) {
    P<IVariant> target;
    switch (element->getKind()) {
    case IVariant::Kind::Array: target = make<CVariantArray>(); break;
    case IVariant::Kind::Map: target = make<CVariantMap>(); break;
    default: return element;
    }
    pending.push_back({element.get(), target.get()});
    return target;
}

} // namespace

P<IVariant> IVariant::copy() const {
    std::vector<PendingCopy> pending;
    P<IVariant> root = copyElement(P<IVariant>::share(const_cast<IVariant*>(this)), pending);
    while (!pending.empty()) {
        const PendingCopy next = pending.back();
        pending.pop_back();
        if (next.source->isArray()) {
            const CVariantArray& source = next.source->asArray();
            CVariantArray& target = next.target->asArray();
            target.reserve(source.getCount());
            for (const P<IVariant>& element : source.getValues()) target.add(copyElement(element, pending));
        } else {
            const CVariantMap& source = next.source->asMap();
            CVariantMap& target = next.target->asMap();
            target.reserve(source.getCount());
            for (const CVariantMap::Entry& entry : source.getEntries()) {
                target.set(entry.key, copyElement(entry.value, pending));
            }
        }
    }
    return root;
}

} // namespace zuno
