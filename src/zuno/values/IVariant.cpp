#include <zuno/CVariantArray.h>
#include <zuno/CVariantMap.h>
#include <zuno/IVariant.h>

#include <cstdint>
#include <typeinfo>
#include <utility>
#include <vector>

namespace zuno {

bool IVariant::isNumber() const {
    const Kind kind = getKind();
    return kind == Kind::Int32 || kind == Kind::Int64 || kind == Kind::UInt64 || kind == Kind::Double;
}

// Each variant class overrides the accessors of its own kind; what reaches these does not
// hold such a value.
bool IVariant::getBoolean() const { throwCastError(this, typeid(bool)); }
int64_t IVariant::getInt64() const { throwCastError(this, typeid(int64_t)); }
uint64_t IVariant::getUInt64() const { throwCastError(this, typeid(uint64_t)); }
double IVariant::getDouble() const { throwCastError(this, typeid(double)); }
String IVariant::getString() const { throwCastError(this, typeid(String)); }
const CVariantArray& IVariant::asArray() const { throwCastError(this, typeid(CVariantArray)); }
const CVariantMap& IVariant::asMap() const { throwCastError(this, typeid(CVariantMap)); }

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
