#pragma once

#include <zuno/CReferencable.h>
#include <zuno/IObjectDestructListener.h>
#include <zuno/P.h>

namespace zuno {

// A frail (weak) reference: it does not keep its object alive and becomes null when the
// object is destroyed. lock() turns it into an owning pointer while the object lives.
template <class T>
class PFrail : private IObjectDestructListener {
public:
    PFrail() noexcept = default;
    PFrail(const P<T>& object) { attach(object.get()); }
    PFrail(const PFrail& other) { std::lock_guard lock(CReferencable::frailMutex()); attach(other.m_ptr); }
    PFrail& operator=(const PFrail& other) {
        if (this != &other) {
            std::lock_guard lock(CReferencable::frailMutex());
            detach();
            attach(other.m_ptr);
        }
        return *this;
    }
    PFrail& operator=(const P<T>& object) {
        std::lock_guard lock(CReferencable::frailMutex());
        detach();
        attach(object.get());
        return *this;
    }
    ~PFrail() { std::lock_guard lock(CReferencable::frailMutex()); detach(); }

    // An owning pointer to the object, or null once it has died or begun dying.
    P<T> lock() const {
        std::lock_guard guard(CReferencable::frailMutex());
        if (!m_ptr || !m_object->tryAddRef()) return nullptr;
        return P<T>::adopt(m_ptr);
    }

    bool expired() const {
        std::lock_guard guard(CReferencable::frailMutex());
        return m_ptr == nullptr;
    }

private:
    void attach(T* object) {
        m_ptr = object;
        m_object = object ? dynamic_cast<const CReferencable*>(static_cast<const IBase*>(object)) : nullptr;
        if (!m_object) m_ptr = nullptr;
        if (m_object) m_object->addDestructListener(this);
    }
    void detach() {
        if (m_object) m_object->removeDestructListener(this);
        m_ptr = nullptr;
        m_object = nullptr;
    }
    void objectDestroyed(const IBase*) override {
        m_ptr = nullptr;
        m_object = nullptr;
    }

    T* m_ptr = nullptr;
    const CReferencable* m_object = nullptr;
};

} // namespace zuno
