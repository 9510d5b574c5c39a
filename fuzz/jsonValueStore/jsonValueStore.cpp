// The JSON value store's loader: a document from memory, then every sub-store walked, every
// value read as each kind, and the document written out again as the store would write it.
#include "stores/CJsonValueStore.h"

#include <zuno/CException.h>
#include <zuno/IPathes.h>

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

using namespace zuno;

namespace {

void readEverything(const P<IValueStore>& root) {
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

// An empty store over a file that does not exist (and is never written): what the loader
// reads comes from memory.
P<IValueStore> emptyStore() {
    const std::string path = (std::filesystem::temp_directory_path() / "zuno-fuzz-never-written.json").string();
    return make<CJsonValueStore>(getPathes()->pathToURI(String::fromUTF8ToWide(path)), ValueStoreAccess::Read);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const P<IValueStore> store = emptyStore();
    try {
        store->loadBinary(std::string(reinterpret_cast<const char*>(data), size));
    } catch (const CException&) {
        return 0;  // not a store document: its error names the line
    }
    readEverything(store);
    static_cast<CJsonValueStore&>(*store).toJson();
    return 0;
}
