#pragma once

#include <zuno/IBase.h>

#include <atomic>
#include <cstdint>
#include <mutex>

namespace zuno {

class IObjectDestructListener;

// The intrusive, atomic reference count behind every framework object. A new object
// starts with one reference, which belongs to its creator.
class CReferencable : public virtual IBase {
public:
    // Count an object is given while it is being destroyed: references taken and dropped
    // by its destructor can never bring it back to zero.
    static constexpr int32_t DestroyingCount = -1000000;

    void addRef() const override;
    void release() const override;

    int32_t getRefCount() const { return m_count.load(std::memory_order_acquire); }

    // Adds a reference only while the object is alive (count above zero); used to turn a
    // frail reference into an owning one. Call with frailMutex() held.
    bool tryAddRef() const;

    // Destruct listeners; the object notifies and forgets them when it dies.
    void addDestructListener(IObjectDestructListener* listener) const;
    void removeDestructListener(IObjectDestructListener* listener) const;

    // Guards every frail reference and destruct listener in the process.
    static std::recursive_mutex& frailMutex();

protected:
    CReferencable() = default;
    // A copy is a new object with a fresh count and no listeners.
    CReferencable(const CReferencable&) : IBase() {}
    CReferencable& operator=(const CReferencable&) { return *this; }
    ~CReferencable() override;

    // Deletes the object through its virtual destructor.
    virtual void destroy() const;

private:
    struct Listeners;

    mutable std::atomic<int32_t> m_count{1};
    mutable std::atomic<Listeners*> m_listeners{nullptr};
};

} // namespace zuno
