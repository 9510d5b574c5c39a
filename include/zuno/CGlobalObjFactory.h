#pragma once

#include <zuno/CObject.h>
#include <zuno/P.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace zuno {

// The process-wide factory of services. Each service is created on its first request and
// kept until process exit, when the services are released in reverse order of creation.
//
// A service is identified by the address of a small static of the one accessor through
// which all its requests go:
//
//     P<IMailFactory> getMailFactory() {
//         static const CGlobalObjFactory::ServiceKey key;
//         return CGlobalObjFactory::service<IMailFactory>(key, [] { ... make<CMailFactory>() ... });
//     }
class CGlobalObjFactory : public CObject {
public:
    static constexpr uint64_t AliveMarker = 0x73DF50893D92A405ull;
    static constexpr uint64_t DeadMarker = 0x84E0619A4EA3B516ull;

    // The process-wide slot that holds the factory.
    struct Slot {
        std::atomic<CGlobalObjFactory*> factory{nullptr};
        std::atomic<uint64_t> alive{0};
        std::atomic<uint64_t> dead{0};
    };

    // Holds one service for the factory.
    class IPtrHolder {
    public:
        virtual ~IPtrHolder() = default;
        virtual IBase* getBase() const = 0;
    };

    template <class T>
    class CPtrHolderImpl : public IPtrHolder {
    public:
        explicit CPtrHolderImpl(P<T> object) : m_object(std::move(object)) {}
        T* get() const { return m_object.get(); }
        IBase* getBase() const override { return const_cast<std::remove_const_t<T>*>(m_object.get()); }

    private:
        P<T> m_object;
    };

    struct ServiceKey {
        char unused = 0;
    };

    // A service's creator with its type erased; createHolder<T> restores it.
    using ErasedCreator = void (*)();
    using HolderCreator = IPtrHolder* (*)(ErasedCreator create);

    // The slot, after creating the factory on the first call. After process exit has torn
    // the factory down, a call breaks into an attached debugger and then waits forever.
    static Slot& access();

    // Double-checked get-or-create under the lookup and creation locks.
    IPtrHolder* getOrCreate(const void* key, HolderCreator creator, ErasedCreator create);

    template <class T>
    static P<T> service(const ServiceKey& key, P<T> (*create)()) {
        CGlobalObjFactory* factory = access().factory.load(std::memory_order_acquire);
        P<CGlobalObjFactory> keepAlive = P<CGlobalObjFactory>::share(factory);
        IPtrHolder* holder = factory->getOrCreate(&key, &createHolder<T>, reinterpret_cast<ErasedCreator>(create));
        return P<T>::share(static_cast<CPtrHolderImpl<T>*>(holder)->get());
    }

    // A service that stays alive for the whole process, even while the factory is torn
    // down at exit: for the text encodings, null strings and the localizer, which code
    // running during exit may still need. The pointer is cached, so later calls are cheap.
    template <class T>
    static T* pinned(const ServiceKey& key, P<T> (*create)()) {
        P<T> object = service<T>(key, create);
        static_cast<const IBase*>(object.get())->addRef();
        return object.get();
    }

    ~CGlobalObjFactory() override;

private:
    CGlobalObjFactory() = default;

    template <class T>
    static IPtrHolder* createHolder(ErasedCreator create) {
        return new CPtrHolderImpl<T>(reinterpret_cast<P<T> (*)()>(create)());
    }

    static void create(Slot& slot);
    static void exitHandler();

    std::mutex m_lookupLock;
    // Recursive: a service's creator may ask for other services (a null string needs its codec).
    std::recursive_mutex m_creationLock;
    std::unordered_map<const void*, IPtrHolder*> m_holders;
    std::vector<std::unique_ptr<IPtrHolder>> m_creationOrder;
};

} // namespace zuno
