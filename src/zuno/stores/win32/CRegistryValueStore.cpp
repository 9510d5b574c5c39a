#include "stores/win32/CRegistryValueStore.h"
#include "stores/valueText.h"

#include <zuno/CError.h>
#include <zuno/CObjectError.h>
#include <zuno/CURI.h>
#include <zuno/CVariantBoolean.h>
#include <zuno/CVariantInt64.h>
#include <zuno/CVariantString.h>
#include <zuno/messageTexts.h>
#include <zuno/systemError.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace zuno::win32 {

namespace {

// URI path characters kept as they are in a sub-key's name: "/" is escaped, it separates keys.
const wchar_t SegmentAllowed[] = L";:,@&=+$";
constexpr DWORD MaxKeyNameLength = 256;
constexpr DWORD MaxValueNameLength = 16384;

// The key names of a registry path, decoded; empty segments are dropped.
std::vector<String> keyNames(const P<IURI>& uri) {
    std::vector<String> names;
    for (const String& segment : uri->getPath().split(L"/")) {
        if (!segment.isEmpty()) names.push_back(CURI::unescape(segment));
    }
    return names;
}

std::wstring subKeyPath(const std::vector<String>& names) {
    std::wstring path;
    for (size_t i = 1; i < names.size(); ++i) {
        if (!path.empty()) path += L'\\';
        path += names[i].toStdWString();
    }
    return path;
}

REGSAM accessRights(ValueStoreAccess access) {
    return hasAccess(access, ValueStoreAccess::Write) ? KEY_READ | KEY_WRITE : KEY_READ;
}

// Opens (or, with write access, creates) a key; null when it is missing and may not be
// created. Other failures answer their status.
LSTATUS openKey(HKEY parent, const std::wstring& path, ValueStoreAccess access, bool create, HKEY& key) {
    key = nullptr;
    LSTATUS status = RegOpenKeyExW(parent, path.c_str(), 0, accessRights(access), &key);
    if (status == ERROR_FILE_NOT_FOUND && create) {
        status = RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, accessRights(access), nullptr, &key, nullptr);
    }
    if (status == ERROR_FILE_NOT_FOUND) status = ERROR_SUCCESS;
    return status;
}

String textOfRegistryString(const std::vector<BYTE>& data) {
    const auto* text = reinterpret_cast<const wchar_t*>(data.data());
    size_t count = data.size() / sizeof(wchar_t);
    while (count > 0 && text[count - 1] == L'\0') --count;  // stored with or without its terminator
    return String(text, int32_t(count));
}

// A failed registry call, with its status for assignTo's message.
class RegistryFailure : public CError {
public:
    RegistryFailure(const String& message, LSTATUS status) : CError(message), status(status) {}
    LSTATUS status;
};

} // namespace

HKEY CRegistryValueStore::baseKey(const String& name) {
    static const std::pair<const wchar_t*, HKEY> bases[] = {
        {L"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
        {L"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
        {L"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
        {L"HKEY_USERS", HKEY_USERS},
    };
    for (const auto& [baseName, key] : bases) {
        if (name.equalsNoCase(baseName)) return key;
    }
    return nullptr;
}

CRegistryValueStore::CRegistryValueStore(const P<IURI>& uri, ValueStoreAccess access)
    : CValueStoreBase(uri, access) {
    const std::vector<String> names = keyNames(uri);
    const String base = names.empty() ? String::empty() : names.front();
    const HKEY baseHandle = baseKey(base);
    if (!baseHandle) throw CError(messageTexts::UnknownRegistryBaseKey + base);
    const bool create = hasAccess(access, ValueStoreAccess::Write);
    const LSTATUS status = openKey(baseHandle, subKeyPath(names), access, create, m_key);
    if (status != ERROR_SUCCESS) throwFailure(L"CRegistryValueStore::load", status);
}

CRegistryValueStore::CRegistryValueStore(const P<IURI>& uri, ValueStoreAccess access, HKEY key)
    : CValueStoreBase(uri, access), m_key(key) {}

CRegistryValueStore::~CRegistryValueStore() {
    if (m_key) RegCloseKey(m_key);
}

void CRegistryValueStore::throwFailure(const wchar_t* operation, LSTATUS status) const {
    throw RegistryFailure(String(operation) + L" failed for '" + getURI()->toString() + L"' (Code: " +
                              valueText::fromInt64(status) + L", " + getSystemErrorText(uint32_t(status)) + L")",
                          status);
}

void CRegistryValueStore::assignTo(const P<IValueStore>& target) {
    try {
        CValueStoreBase::assignTo(target);
    } catch (const RegistryFailure& failure) {
        throw CError(String(messageTexts::RegistryAssignToFailed).replace(L"%d", valueText::fromInt64(failure.status)));
    }
}

P<IVariant> CRegistryValueStore::readValue(const String& name) {
    if (!m_key) return nullptr;
    const std::wstring valueName = name.toStdWString();
    std::vector<BYTE> data(256);
    DWORD type = 0;
    LSTATUS status;
    for (;;) {
        DWORD size = DWORD(data.size());
        status = RegQueryValueExW(m_key, valueName.c_str(), nullptr, &type, data.data(), &size);
        if (status == ERROR_MORE_DATA) {
            data.resize(size + sizeof(wchar_t));
            continue;
        }
        data.resize(size);
        break;
    }
    if (status == ERROR_FILE_NOT_FOUND) return nullptr;
    if (status != ERROR_SUCCESS) throwFailure(L"CRegistryValueStore::load", status);
    switch (type) {
    case REG_SZ:
    case REG_EXPAND_SZ: return make<CVariantString>(textOfRegistryString(data));
    case REG_DWORD: {
        DWORD value = 0;
        std::memcpy(&value, data.data(), std::min(data.size(), sizeof value));
        // Booleans are stored as DWORD 0 or 1, integers as QWORD (getInt64 reads any DWORD).
        if (value <= 1) return make<CVariantBoolean>(value == 1);
        return make<CVariantInt64>(int64_t(value));
    }
    case REG_QWORD: {
        int64_t value = 0;
        std::memcpy(&value, data.data(), std::min(data.size(), sizeof value));
        return make<CVariantInt64>(value);
    }
    default:
        throw CParseError(L"The registry value '" + name + L"' has a type the store does not read (" +
                          valueText::fromInt64(type) + L").");
    }
}

bool CRegistryValueStore::readRawInteger(const String& name, uint64_t& bits) {
    checkRead();
    if (!m_key) return false;
    DWORD type = 0;
    uint64_t value = 0;
    DWORD size = sizeof value;
    const LSTATUS status = RegQueryValueExW(m_key, name.toStdWString().c_str(), nullptr, &type,
                                            reinterpret_cast<BYTE*>(&value), &size);
    if (status != ERROR_SUCCESS || (type != REG_QWORD && type != REG_DWORD)) return false;
    bits = type == REG_DWORD ? uint64_t(uint32_t(value)) : value;
    return true;
}

// A REG_QWORD holds the 64 bits of a signed or an unsigned integer alike: each getter
// reads them as its own kind.
int64_t CRegistryValueStore::getInt64(const String& name, int64_t defaultValue) {
    uint64_t bits = 0;
    if (readRawInteger(name, bits)) return int64_t(bits);
    return CValueStoreBase::getInt64(name, defaultValue);
}

uint64_t CRegistryValueStore::getUInt64(const String& name, uint64_t defaultValue) {
    uint64_t bits = 0;
    if (readRawInteger(name, bits)) return bits;
    return CValueStoreBase::getUInt64(name, defaultValue);
}

void CRegistryValueStore::writeValue(const String& name, const P<IVariant>& value) {
    const std::wstring valueName = name.toStdWString();
    LSTATUS status;
    if (value->isBoolean()) {
        const DWORD flag = value->getBoolean() ? 1 : 0;
        status = RegSetValueExW(m_key, valueName.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&flag), sizeof flag);
    } else if (value->isInt64() || value->isUInt64()) {
        const uint64_t bits = value->isInt64() ? uint64_t(value->getInt64()) : value->getUInt64();
        status = RegSetValueExW(m_key, valueName.c_str(), 0, REG_QWORD, reinterpret_cast<const BYTE*>(&bits), sizeof bits);
    } else {
        const std::wstring text =
            (value->isDouble() ? valueText::fromDouble(value->getDouble()) : value->getString()).toStdWString();
        status = RegSetValueExW(m_key, valueName.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                                DWORD((text.size() + 1) * sizeof(wchar_t)));
    }
    if (status != ERROR_SUCCESS) throwFailure(L"CRegistryValueStore::store", status);
}

std::vector<String> CRegistryValueStore::getValueNames() {
    checkRead();
    std::vector<String> names;
    if (!m_key) return names;
    std::vector<wchar_t> name(MaxValueNameLength);
    for (DWORD index = 0;; ++index) {
        DWORD length = DWORD(name.size());
        const LSTATUS status = RegEnumValueW(m_key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) break;
        if (status != ERROR_SUCCESS) throwFailure(L"CRegistryValueStore::load", status);
        names.push_back(String(name.data(), int32_t(length)));
    }
    return names;
}

bool CRegistryValueStore::removeValue(const String& name) {
    checkWrite();
    const LSTATUS status = RegDeleteValueW(m_key, name.toStdWString().c_str());
    if (status == ERROR_FILE_NOT_FOUND) return false;
    if (status != ERROR_SUCCESS) throwFailure(L"CRegistryValueStore::store", status);
    return true;
}

bool CRegistryValueStore::hasSubStore(const String& name) {
    return bool(getSubStore(name, false));
}

std::vector<String> CRegistryValueStore::getSubStoreNames() {
    checkRead();
    std::vector<String> names;
    if (!m_key) return names;
    wchar_t name[MaxKeyNameLength];
    for (DWORD index = 0;; ++index) {
        DWORD length = MaxKeyNameLength;
        const LSTATUS status = RegEnumKeyExW(m_key, index, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) break;
        if (status != ERROR_SUCCESS) throwFailure(L"CRegistryValueStore::load", status);
        names.push_back(String(name, int32_t(length)));
    }
    return names;
}

P<IValueStore> CRegistryValueStore::getSubStore(const String& name, bool create) {
    checkRead();
    if (create) checkWrite();
    if (!m_key) return nullptr;
    if (name.isEmpty() || name.contains(L"\\")) throw CInvalidArgError(this, nullptr, L"getSubStore", L"the name '" + name + L"'");
    HKEY key = nullptr;
    const LSTATUS status = openKey(m_key, name.toStdWString(), getAccess(), create, key);
    if (status != ERROR_SUCCESS) throwFailure(L"CRegistryValueStore::load", status);
    if (!key) return nullptr;
    String path = getURI()->getPath();
    if (!path.endsWith(L"/")) path += L"/";
    const P<IURI> uri = make<CURI>(L"registry:" + path + CURI::escape(name, SegmentAllowed));
    return adopt<IValueStore>(new CRegistryValueStore(uri, getAccess(), key));
}

bool CRegistryValueStore::removeSubStore(const String& name) {
    checkWrite();
    if (name.isEmpty()) return false;  // never the key itself
    const LSTATUS status = RegDeleteTreeW(m_key, name.toStdWString().c_str());
    if (status == ERROR_FILE_NOT_FOUND) return false;
    if (status != ERROR_SUCCESS) throwFailure(L"CRegistryValueStore::store", status);
    return true;
}

void CRegistryValueStore::loadBinary(const std::string&) {
    throw CMethodNotImplementedError(this, nullptr, L"loadBinary");
}

} // namespace zuno::win32
