#include <zuno/CGlobalObjFactory.h>

#include "core/platform.h"

#include <cstdlib>

namespace zuno {

namespace {
CGlobalObjFactory::Slot g_slot;
std::once_flag g_created;
} // namespace

void CGlobalObjFactory::create(Slot& slot) {
    slot.factory.store(nullptr);
    slot.dead.store(DeadMarker);
    slot.alive.store(0);
    slot.factory.store(new CGlobalObjFactory, std::memory_order_release);
    slot.alive.store(AliveMarker, std::memory_order_release);
    std::atexit(&CGlobalObjFactory::exitHandler);
}

CGlobalObjFactory::Slot& CGlobalObjFactory::access() {
    std::call_once(g_created, [] { create(g_slot); });
    while (g_slot.alive.load(std::memory_order_acquire) != AliveMarker) {
        // Asked for after exit tore the factory down: a programming error.
        if (g_slot.dead.load() == DeadMarker) platform::breakIntoDebugger();
        platform::sleepMilliseconds(1);
    }
    return g_slot;
}

void CGlobalObjFactory::exitHandler() {
    g_slot.alive.store(0);
    g_slot.dead.store(DeadMarker);
    if (CGlobalObjFactory* factory = g_slot.factory.load()) factory->release();
}

CGlobalObjFactory::IPtrHolder* CGlobalObjFactory::getOrCreate(const void* key, HolderCreator creator,
                                                             ErasedCreator create) {
    {
        std::lock_guard lookup(m_lookupLock);
        auto found = m_holders.find(key);
        if (found != m_holders.end()) return found->second;
    }
    std::lock_guard creation(m_creationLock);
    {
        std::lock_guard lookup(m_lookupLock);
        auto found = m_holders.find(key);
        if (found != m_holders.end()) return found->second;
    }
    // Created outside the lookup lock: a service's constructor may ask for other services.
    std::unique_ptr<IPtrHolder> holder(creator(create));
    IPtrHolder* result = holder.get();
    std::lock_guard lookup(m_lookupLock);
    m_creationOrder.push_back(std::move(holder));
    m_holders.emplace(key, result);
    return result;
}

CGlobalObjFactory::~CGlobalObjFactory() {
    while (!m_creationOrder.empty()) m_creationOrder.pop_back();
}

} // namespace zuno
