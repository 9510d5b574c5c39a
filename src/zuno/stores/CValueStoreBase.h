#pragma once

#include <zuno/CObject.h>
#include <zuno/IValueStore.h>
#include <zuno/IVariant.h>

namespace zuno {

// What the three stores share: the access checks and the typed getters and setters, built
// on two operations each store provides, reading and writing one value as a variant. A
// store keeps values in its own form (the XML store as text, the JSON store as variants of
// their kind, the registry store as registry values); the getters convert between them:
// texts are read as numbers when the whole text is one, booleans as "true" and "false".
class CValueStoreBase : public CObject, public IValueStore {
public:
    P<IURI> getURI() const override { return m_uri; }
    ValueStoreAccess getAccess() const override { return m_access; }

    String getString(const String& name, const String& defaultValue) override;
    bool getBoolean(const String& name, bool defaultValue) override;
    int64_t getInt64(const String& name, int64_t defaultValue) override;
    uint64_t getUInt64(const String& name, uint64_t defaultValue) override;
    double getDouble(const String& name, double defaultValue) override;
    void setString(const String& name, const String& value) override;
    void setBoolean(const String& name, bool value) override;
    void setInt64(const String& name, int64_t value) override;
    void setUInt64(const String& name, uint64_t value) override;
    void setDouble(const String& name, double value) override;
    bool hasValue(const String& name) override;

    void assignTo(const P<IValueStore>& target) override;

protected:
    CValueStoreBase(P<IURI> uri, ValueStoreAccess access) : m_uri(std::move(uri)), m_access(access) {}

    // The value `name`, or null when there is none (read access is checked already).
    virtual P<IVariant> readValue(const String& name) = 0;
    // Stores a scalar variant (write access is checked already).
    virtual void writeValue(const String& name, const P<IVariant>& value) = 0;

    // Raise "No read access" / CReadOnlyError "No write access" unless the store has it.
    void checkRead() const;
    void checkWrite() const;
    // A value that cannot be read as the asked kind.
    [[noreturn]] void throwNotA(const String& name, const wchar_t* kind, const P<IVariant>& value) const;

private:
    P<IVariant> readChecked(const String& name);

    P<IURI> m_uri;
    ValueStoreAccess m_access;
};

} // namespace zuno
