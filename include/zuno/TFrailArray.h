#pragma once

#include <zuno/CFrailArrayTemplateBase.h>
#include <zuno/CReferencable.h>
#include <zuno/P.h>

#include <vector>

namespace zuno {

// A list of frail references, as listener lists use it: holding an object here does not
// keep it alive, and its entry is removed when it is destroyed.
template <class T>
class TFrailArray : private CFrailArrayTemplateBase {
public:
    // Adds the object; false when it is null or not a framework object.
    bool add(const P<T>& object) {
        auto* counted = object ? dynamic_cast<const CReferencable*>(static_cast<const IBase*>(object.get())) : nullptr;
        if (!counted) return false;
        addEntry(counted, static_cast<void*>(const_cast<std::remove_const_t<T>*>(object.get())));
        return true;
    }
    bool remove(const P<T>& object) { return removeEntry(object.get()); }
    void clear() { clearEntries(); }
    size_t size() const { return entryCount(); }
    bool empty() const { return size() == 0; }

    // Owning pointers to the objects still alive, in the order they were added; callers
    // iterate over this snapshot, so listeners may add or remove entries meanwhile.
    std::vector<P<T>> lockAll() const {
        std::vector<P<T>> result;
        for (void* item : lockEntries()) result.push_back(P<T>::adopt(static_cast<T*>(item)));
        return result;
    }
};

} // namespace zuno
