#include <zuno/CFrailArrayTemplateBase.h>
#include <zuno/CReferencable.h>

#include <algorithm>

namespace zuno {

CFrailArrayTemplateBase::CFrailArrayTemplateBase(const CFrailArrayTemplateBase& other) : IObjectDestructListener() {
    *this = other;
}

CFrailArrayTemplateBase& CFrailArrayTemplateBase::operator=(const CFrailArrayTemplateBase& other) {
    if (this == &other) return *this;
    std::lock_guard lock(CReferencable::frailMutex());
    clearEntries();
    for (const Entry& entry : other.m_entries) addEntry(entry.object, entry.item);
    return *this;
}

CFrailArrayTemplateBase::~CFrailArrayTemplateBase() {
    clearEntries();
}

void CFrailArrayTemplateBase::addEntry(const CReferencable* object, void* item) {
    std::lock_guard lock(CReferencable::frailMutex());
    object->addDestructListener(this);
    m_entries.push_back({object, item});
}

bool CFrailArrayTemplateBase::removeEntry(const void* item) {
    std::lock_guard lock(CReferencable::frailMutex());
    auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& e) { return e.item == item; });
    if (found == m_entries.end()) return false;
    found->object->removeDestructListener(this);
    m_entries.erase(found);
    return true;
}

void CFrailArrayTemplateBase::clearEntries() {
    std::lock_guard lock(CReferencable::frailMutex());
    for (const Entry& entry : m_entries) entry.object->removeDestructListener(this);
    m_entries.clear();
}

size_t CFrailArrayTemplateBase::entryCount() const {
    std::lock_guard lock(CReferencable::frailMutex());
    return m_entries.size();
}

std::vector<void*> CFrailArrayTemplateBase::lockEntries() const {
    std::lock_guard lock(CReferencable::frailMutex());
    std::vector<void*> items;
    items.reserve(m_entries.size());
    for (const Entry& entry : m_entries)
        if (entry.object->tryAddRef()) items.push_back(entry.item);
    return items;
}

void CFrailArrayTemplateBase::objectDestroyed(const IBase* object) {
    // Called under the frail mutex by the dying object; it has already forgotten us.
    m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(),
                                   [&](const Entry& e) { return static_cast<const IBase*>(e.object) == object; }),
                    m_entries.end());
}

} // namespace zuno
