#pragma once

#include <zuno/IObjectDestructListener.h>

#include <cstddef>
#include <vector>

namespace zuno {

class CReferencable;

// Untyped core of TFrailArray: a list of objects it does not own, each watched so that
// its entry disappears when the object dies. All members run under the frail mutex.
class CFrailArrayTemplateBase : private IObjectDestructListener {
protected:
    struct Entry {
        const CReferencable* object;
        void* item;  // the object as the array's interface type
    };

    CFrailArrayTemplateBase() = default;
    CFrailArrayTemplateBase(const CFrailArrayTemplateBase& other);
    CFrailArrayTemplateBase& operator=(const CFrailArrayTemplateBase& other);
    ~CFrailArrayTemplateBase();

    void addEntry(const CReferencable* object, void* item);
    bool removeEntry(const void* item);
    void clearEntries();
    size_t entryCount() const;
    // Items whose objects could be locked, with a reference added to each.
    std::vector<void*> lockEntries() const;

private:
    void objectDestroyed(const IBase* object) override;

    std::vector<Entry> m_entries;
};

} // namespace zuno
