#include "stores/CValueStoreBase.h"
#include "stores/valueText.h"

#include <zuno/CError.h>
#include <zuno/CVariantBoolean.h>
#include <zuno/CVariantDouble.h>
#include <zuno/CVariantInt64.h>
#include <zuno/CVariantString.h>
#include <zuno/CVariantUInt64.h>
#include <zuno/messageTexts.h>

#include <cmath>
#include <utility>
#include <vector>

namespace zuno {

namespace {

// The text of a scalar, as the XML store would hold it; null for other kinds.
String textOf(const IVariant& value) {
    switch (value.getKind()) {
    case IVariant::Kind::String: return value.getString();
    case IVariant::Kind::Boolean: return valueText::fromBoolean(value.getBoolean());
    case IVariant::Kind::Int32:
    case IVariant::Kind::Int64: return valueText::fromInt64(value.getInt64());
    case IVariant::Kind::UInt64: return valueText::fromUInt64(value.getUInt64());
    case IVariant::Kind::Double: return valueText::fromDouble(value.getDouble());
    default: return String();
    }
}

bool isSigned(const IVariant& value) {
    return value.isInt32() || value.isInt64();
}

} // namespace

void CValueStoreBase::checkRead() const {
    if (!hasAccess(m_access, ValueStoreAccess::Read)) throw CError(messageTexts::NoReadAccess);
}

void CValueStoreBase::checkWrite() const {
    if (!hasAccess(m_access, ValueStoreAccess::Write)) throw CReadOnlyError(messageTexts::NoWriteAccess);
}

void CValueStoreBase::throwNotA(const String& name, const wchar_t* kind, const P<IVariant>& value) const {
    const String text = textOf(*value);
    throw CParseError(L"The value '" + name + L"' (" + (text.isNull() ? String(L"not a scalar") : text) +
                      L") is not " + kind + L".");
}

P<IVariant> CValueStoreBase::readChecked(const String& name) {
    checkRead();
    P<IVariant> value = readValue(name);
    // A JSON null is as good as no value.
    if (value && value->isNull()) return nullptr;
    return value;
}

bool CValueStoreBase::hasValue(const String& name) {
    return bool(readChecked(name));
}

String CValueStoreBase::getString(const String& name, const String& defaultValue) {
    const P<IVariant> value = readChecked(name);
    if (!value) return defaultValue;
    const String text = textOf(*value);
    if (text.isNull()) throwNotA(name, L"a text", value);
    return text;
}

bool CValueStoreBase::getBoolean(const String& name, bool defaultValue) {
    const P<IVariant> value = readChecked(name);
    if (!value) return defaultValue;
    if (value->isBoolean()) return value->getBoolean();
    if (value->isString()) return value->getString() == String(L"true");
    if (isSigned(*value)) return value->getInt64() != 0;
    if (value->isUInt64()) return value->getUInt64() != 0;
    throwNotA(name, L"a boolean", value);
}

int64_t CValueStoreBase::getInt64(const String& name, int64_t defaultValue) {
    const P<IVariant> value = readChecked(name);
    if (!value) return defaultValue;
    if (isSigned(*value)) return value->getInt64();
    if (value->isUInt64() && value->getUInt64() <= uint64_t(INT64_MAX)) return int64_t(value->getUInt64());
    if (value->isString()) {
        if (const auto number = valueText::toInt64(value->getString())) return *number;
    }
    throwNotA(name, L"a 64-bit integer", value);
}

uint64_t CValueStoreBase::getUInt64(const String& name, uint64_t defaultValue) {
    const P<IVariant> value = readChecked(name);
    if (!value) return defaultValue;
    if (value->isUInt64()) return value->getUInt64();
    if (isSigned(*value) && value->getInt64() >= 0) return uint64_t(value->getInt64());
    if (value->isString()) {
        if (const auto number = valueText::toUInt64(value->getString())) return *number;
    }
    throwNotA(name, L"an unsigned 64-bit integer", value);
}

double CValueStoreBase::getDouble(const String& name, double defaultValue) {
    const P<IVariant> value = readChecked(name);
    if (!value) return defaultValue;
    if (value->isNumber()) return value->getDouble();
    if (value->isString()) {
        if (const auto number = valueText::toDouble(value->getString())) return *number;
    }
    throwNotA(name, L"a number", value);
}

void CValueStoreBase::setString(const String& name, const String& value) {
    checkWrite();
    writeValue(name, make<CVariantString>(value.isNull() ? String::empty() : value));
}

void CValueStoreBase::setBoolean(const String& name, bool value) {
    checkWrite();
    writeValue(name, make<CVariantBoolean>(value));
}

void CValueStoreBase::setInt64(const String& name, int64_t value) {
    checkWrite();
    writeValue(name, make<CVariantInt64>(value));
}

void CValueStoreBase::setUInt64(const String& name, uint64_t value) {
    checkWrite();
    writeValue(name, make<CVariantUInt64>(value));
}

void CValueStoreBase::setDouble(const String& name, double value) {
    checkWrite();
    writeValue(name, make<CVariantDouble>(value));
}

// Walks the source tree without recursion, so any depth copies.
void CValueStoreBase::assignTo(const P<IValueStore>& target) {
    checkRead();
    std::vector<std::pair<P<IValueStore>, P<IValueStore>>> pending{{P<IValueStore>::share(this), target}};
    while (!pending.empty()) {
        auto [from, to] = std::move(pending.back());
        pending.pop_back();
        for (const String& name : from->getValueNames()) {
            const P<IVariant> value = static_cast<CValueStoreBase*>(from.get())->readValue(name);
            if (!value || value->isNull()) continue;
            switch (value->getKind()) {
            case IVariant::Kind::Boolean: to->setBoolean(name, value->getBoolean()); break;
            case IVariant::Kind::Int32:
            case IVariant::Kind::Int64: to->setInt64(name, value->getInt64()); break;
            case IVariant::Kind::UInt64: to->setUInt64(name, value->getUInt64()); break;
            case IVariant::Kind::Double: to->setDouble(name, value->getDouble()); break;
            case IVariant::Kind::String: to->setString(name, value->getString()); break;
            default: break;  // arrays of a JSON file have no counterpart in other stores
            }
        }
        for (const String& name : from->getSubStoreNames()) {
            pending.emplace_back(from->getSubStore(name, false), to->getSubStore(name, true));
        }
    }
}

} // namespace zuno
