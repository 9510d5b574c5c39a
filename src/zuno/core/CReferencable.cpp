#include <zuno/CReferencable.h>
#include <zuno/IObjectDestructListener.h>

#include <algorithm>
#include <vector>

namespace zuno {

struct CReferencable::Listeners {
    std::vector<IObjectDestructListener*> items;
};

std::recursive_mutex& CReferencable::frailMutex() {
    // Never destroyed: frail references may still be dropped during process exit.
    static auto* mutex = new std::recursive_mutex;
    return *mutex;
}

void CReferencable::addRef() const {
    m_count.fetch_add(1, std::memory_order_relaxed);
}

void CReferencable::release() const {
    if (m_count.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        m_count.store(DestroyingCount, std::memory_order_relaxed);
        destroy();
    }
}

bool CReferencable::tryAddRef() const {
    int32_t count = m_count.load(std::memory_order_relaxed);
    while (count > 0) {
        if (m_count.compare_exchange_weak(count, count + 1, std::memory_order_acq_rel)) return true;
    }
    return false;
}

void CReferencable::destroy() const {
    delete this;
}

void CReferencable::addDestructListener(IObjectDestructListener* listener) const {
    std::lock_guard lock(frailMutex());
    Listeners* listeners = m_listeners.load(std::memory_order_relaxed);
    if (!listeners) {
        listeners = new Listeners;
        m_listeners.store(listeners, std::memory_order_release);
    }
    listeners->items.push_back(listener);
}

void CReferencable::removeDestructListener(IObjectDestructListener* listener) const {
    std::lock_guard lock(frailMutex());
    Listeners* listeners = m_listeners.load(std::memory_order_relaxed);
    if (!listeners) return;
    auto& items = listeners->items;
    auto found = std::find(items.begin(), items.end(), listener);
    if (found != items.end()) items.erase(found);
}

CReferencable::~CReferencable() {
    if (!m_listeners.load(std::memory_order_acquire)) return;
    // Frail references are cleared under the frail mutex before the memory goes away, so
    // no one can lock this object any more once the list is empty.
    std::lock_guard lock(frailMutex());
    Listeners* listeners = m_listeners.exchange(nullptr);
    if (!listeners) return;
    const std::vector<IObjectDestructListener*> items = std::move(listeners->items);
    delete listeners;
    for (IObjectDestructListener* listener : items) listener->objectDestroyed(this);
}

} // namespace zuno
