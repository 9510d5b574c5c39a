#pragma once
// What the value-store loader targets share: a store over a file that is never written, filled
// from the fuzzer's bytes, then read in every way a caller could.
#include <zuno/CException.h>
#include <zuno/IPathes.h>
#include <zuno/IValueStore.h>

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace zuno::fuzz {

// Every sub-store walked, every value read as each kind.
inline void readEverything(const P<IValueStore>& root) {
    std::vector<P<IValueStore>> pending{root};
    while (!pending.empty()) {
        const P<IValueStore> store = pending.back();
        pending.pop_back();
        for (const String& name : store->getValueNames()) {
            try {
                store->getString(name, String::empty());
                store->getBoolean(name, false);
                store->getDouble(name, 0);
                store->getInt64(name, 0);
                store->getUInt64(name, 0);
            } catch (const CException&) {
                // A value that is not of the asked kind.
            }
        }
        // A name an XML document repeats reaches its first element only: walk it once.
        std::set<String> names;
        for (const String& name : store->getSubStoreNames()) {
            if (!names.insert(name).second) continue;
            if (P<IValueStore> sub = store->getSubStore(name, false)) pending.push_back(sub);
        }
    }
}

// An empty store of class `Store` over a file that does not exist (and is never written): what
// its loader reads comes from memory.
template <class Store>
P<IValueStore> emptyStore(const char* fileName) {
    const std::string path = (std::filesystem::temp_directory_path() / fileName).string();
    return make<Store>(getPathes()->pathToURI(String::fromUTF8ToWide(path)), ValueStoreAccess::Read);
}

// Loads `data` into `store`; a document the loader accepts is then read in full and written out
// again with `write`, as the store would write it.
template <class Store, class Write>
void loadAndReadBack(const P<IValueStore>& store, const uint8_t* data, size_t size, Write write) {
    try {
        store->loadBinary(std::string(reinterpret_cast<const char*>(data), size));
    } catch (const CException&) {
        return;  // not a store document: its error names the line
    }
    readEverything(store);
    write(static_cast<Store&>(*store));
}

} // namespace zuno::fuzz
