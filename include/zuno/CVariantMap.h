#pragma once

#include <zuno/CObject.h>
#include <zuno/CSmallObject.h>
#include <zuno/IVariant.h>
#include <zuno/P.h>
#include <zuno/String.h>

#include <cstdint>
#include <vector>

namespace zuno {

// Pairs of a String key and a variant, enumerated by index in the order the keys were
// first added. Setting a key that is already present replaces its value and keeps its
// place (as JavaScript's JSON.parse does with a repeated key). Keys are compared by their
// characters; null keys and null values raise CInvalidArgError, as does an index outside
// the map. Small maps are searched linearly, larger ones through a hash index. Releasing
// a deeply nested map does not recurse.
class CVariantMap final : public CObject, public IVariant, public CSmallObject {
public:
    struct Entry {
        String key;
        P<IVariant> value;
    };
    using Entries = std::vector<Entry, CSmallObject::Allocator<Entry>>;

    CVariantMap() = default;
    ~CVariantMap() override;

    Kind getKind() const override { return Kind::Map; }
    using IVariant::asMap;
    const CVariantMap& asMap() const override { return *this; }

    int32_t getCount() const { return int32_t(m_entries.size()); }
    const Entries& getEntries() const { return m_entries; }
    const String& getKeyAt(int32_t index) const;
    const P<IVariant>& getValueAt(int32_t index) const;

    // The index of `key`, or -1.
    int32_t indexOf(const String& key) const;
    bool contains(const String& key) const { return indexOf(key) >= 0; }
    // The value of `key`, or null.
    P<IVariant> get(const String& key) const;

    void set(String key, P<IVariant> value);
    // False when the key was not there.
    bool remove(const String& key);
    void clear();
    void reserve(int32_t count);

private:
    static constexpr size_t LinearSearchLimit = 8;

    int32_t find(const String& wideKey, size_t hash) const;
    void rebuildIndex();
    void addToIndex(int32_t entry, size_t hash);
    void checkIndex(int32_t index, const char* method) const;

    Entries m_entries;  // keys are kept as wide text
    std::vector<int32_t, CSmallObject::Allocator<int32_t>> m_slots;  // open addressing: entry index + 1, 0 when free
};

} // namespace zuno
