#pragma once

#include <zuno/IBase.h>
#include <zuno/P.h>
#include <zuno/String.h>

#include <cstdint>

namespace zuno {

class CVariantArray;
class CVariantMap;

// A reference-counted JSON-like value: one of nine kinds, each implemented by one class
// (CVariantNull, CVariantBoolean, CVariantInt32, CVariantInt64, CVariantUInt64,
// CVariantDouble, CVariantString, CVariantArray, CVariantMap). Scalars are immutable, so
// trees may share them; arrays and maps are changed in place.
class IVariant : public virtual IBase {
public:
    enum class Kind : int32_t { Null, Boolean, Int32, Int64, UInt64, Double, String, Array, Map };

    virtual Kind getKind() const = 0;

    bool isNull() const { return getKind() == Kind::Null; }
    bool isBoolean() const { return getKind() == Kind::Boolean; }
    bool isInt32() const { return getKind() == Kind::Int32; }
    bool isInt64() const { return getKind() == Kind::Int64; }
    bool isUInt64() const { return getKind() == Kind::UInt64; }
    bool isDouble() const { return getKind() == Kind::Double; }
    bool isString() const { return getKind() == Kind::String; }
    bool isArray() const { return getKind() == Kind::Array; }
    bool isMap() const { return getKind() == Kind::Map; }
    // Any of the three integer kinds or a double.
    bool isNumber() const;

    // Values. Each variant class answers for its own kind; the others (and a variant that
    // claims a kind without being of that kind's class) raise CCastError.
    virtual bool getBoolean() const;
    // Any integer kind; an unsigned value above the signed range raises CCastError.
    virtual int64_t getInt64() const;
    // Any integer kind; a negative value raises CCastError.
    virtual uint64_t getUInt64() const;
    // Any number kind.
    virtual double getDouble() const;
    virtual String getString() const;
    CVariantArray& asArray() { return const_cast<CVariantArray&>(static_cast<const IVariant*>(this)->asArray()); }
    virtual const CVariantArray& asArray() const;
    CVariantMap& asMap() { return const_cast<CVariantMap&>(static_cast<const IVariant*>(this)->asMap()); }
    virtual const CVariantMap& asMap() const;

    // A deep copy: arrays and maps are copied, scalars (immutable) are shared. Works
    // without recursion, so any depth is fine. A variant of a kind the framework does not
    // know is shared as it is.
    P<IVariant> copy() const;
};

} // namespace zuno
