#pragma once

#include "stores/CValueStoreBase.h"
#include "core/win32/windows.h"

namespace zuno::win32 {

// A key of the Windows registry as a value store: sub-stores are sub-keys, values are the
// key's values, and the empty name is the key's default value. The URI's path names the
// key: its first segment the base key ("HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE",
// "HKEY_CLASSES_ROOT" or "HKEY_USERS"), the others the sub-key path; empty segments (a
// trailing "/") are skipped. Texts are REG_SZ, integers REG_QWORD, booleans REG_DWORD 0 or
// 1, doubles REG_SZ in their shortest exact form; a DWORD 0 or 1 reads as a boolean (and
// getInt64 reads any DWORD), and a QWORD's 64 bits are read as the kind asked for, since
// the registry does not tell signed from unsigned. Changes are written at once; store()
// has nothing left to do. A missing key opened for reading only is an empty store.
class CRegistryValueStore : public CValueStoreBase {
public:
    // Raises CError "Unknown registry base key: NAME" for any other base key.
    CRegistryValueStore(const P<IURI>& uri, ValueStoreAccess access);
    ~CRegistryValueStore() override;

    bool isModified() const override { return false; }
    int64_t getInt64(const String& name, int64_t defaultValue) override;
    uint64_t getUInt64(const String& name, uint64_t defaultValue) override;
    std::vector<String> getValueNames() override;
    bool removeValue(const String& name) override;
    bool hasSubStore(const String& name) override;
    std::vector<String> getSubStoreNames() override;
    P<IValueStore> getSubStore(const String& name, bool create) override;
    bool removeSubStore(const String& name) override;
    void store() override {}
    void loadBinary(const std::string& data) override;
    // A registry failure while copying raises "CRegistryValueStore::assignTo failed with
    // 'CODE'".
    void assignTo(const P<IValueStore>& target) override;

    // The predefined key of a base key's name, or null.
    static HKEY baseKey(const String& name);

protected:
    P<IVariant> readValue(const String& name) override;
    void writeValue(const String& name, const P<IVariant>& value) override;

private:
    CRegistryValueStore(const P<IURI>& uri, ValueStoreAccess access, HKEY key);
    // Reads a REG_QWORD or REG_DWORD as its 64 bits; false when the value is not one.
    bool readRawInteger(const String& name, uint64_t& bits);
    [[noreturn]] void throwFailure(const wchar_t* operation, LSTATUS status) const;

    HKEY m_key = nullptr;  // null for a missing key opened for reading
};

} // namespace zuno::win32
