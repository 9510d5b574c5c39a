#pragma once

#include <zuno/IBase.h>
#include <zuno/IURI.h>
#include <zuno/P.h>
#include <zuno/String.h>
#include <zuno/ValueStoreAccess.h>

#include <cstdint>
#include <string>
#include <vector>

namespace zuno {

// A persistent, hierarchical set of named values (texts, booleans, integers, doubles) and
// named sub-stores, opened by URI through the value-store manager. A value reads back
// exactly with the getter of the kind it was set with. Getters answer the default for a
// missing value; a value that cannot be read as the asked kind (the text "abc" as an
// integer, an integer outside the asked range) raises CParseError. Reading without read
// access raises "No read access", changing without write access CReadOnlyError "No write
// access". A store and its sub-stores are meant for one thread at a time.
class IValueStore : public virtual IBase {
public:
    virtual P<IURI> getURI() const = 0;
    virtual ValueStoreAccess getAccess() const = 0;
    // True when the store has changes that store() has not written yet.
    virtual bool isModified() const = 0;

    virtual bool hasValue(const String& name) = 0;
    // In the store's own order.
    virtual std::vector<String> getValueNames() = 0;
    virtual String getString(const String& name, const String& defaultValue) = 0;
    // A text value is true exactly when it is "true".
    virtual bool getBoolean(const String& name, bool defaultValue) = 0;
    virtual int64_t getInt64(const String& name, int64_t defaultValue) = 0;
    virtual uint64_t getUInt64(const String& name, uint64_t defaultValue) = 0;
    virtual double getDouble(const String& name, double defaultValue) = 0;
    virtual void setString(const String& name, const String& value) = 0;
    virtual void setBoolean(const String& name, bool value) = 0;
    virtual void setInt64(const String& name, int64_t value) = 0;
    virtual void setUInt64(const String& name, uint64_t value) = 0;
    virtual void setDouble(const String& name, double value) = 0;
    // False when there was no such value.
    virtual bool removeValue(const String& name) = 0;

    virtual bool hasSubStore(const String& name) = 0;
    virtual std::vector<String> getSubStoreNames() = 0;
    // The sub-store `name`; a missing one is created when `create` is set (which needs
    // write access), otherwise the answer is null.
    virtual P<IValueStore> getSubStore(const String& name, bool create) = 0;
    // False when there was no such sub-store. Sub-store objects taken from the removed
    // one raise CInvalidObjectStateError from then on.
    virtual bool removeSubStore(const String& name) = 0;

    // Writes the whole store (sub-stores write their root's) if it has changes. A file
    // store replaces its file in one step: a failure leaves the old file whole.
    virtual void store() = 0;
    // Replaces the store's content with a document in the store's own format, held in
    // memory. Raises the same errors as opening a store file with that content.
    virtual void loadBinary(const std::string& data) = 0;
    // Copies every value and sub-store of this store into `target`, adding to or
    // replacing what is there.
    virtual void assignTo(const P<IValueStore>& target) = 0;
};

} // namespace zuno
