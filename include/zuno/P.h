#pragma once

#include <zuno/IBase.h>

#include <cstddef>
#include <functional>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace zuno {

[[noreturn]] void throwCastError(const IBase* object, const std::type_info& target);

// Owning smart pointer to a framework object. It either adopts the reference a creator
// hands out (adopt, make) or adds one of its own (share); the two look different at the
// call site on purpose.
template <class T>
class P {
public:
    P() noexcept = default;
    P(std::nullptr_t) noexcept {}
    P(const P& other) noexcept : m_ptr(other.m_ptr) { retain(); }
    P(P&& other) noexcept : m_ptr(std::exchange(other.m_ptr, nullptr)) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    P(const P<U>& other) noexcept : m_ptr(other.get()) { retain(); }
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    P(P<U>&& other) noexcept : m_ptr(other.detach()) {}
    ~P() { drop(); }

    P& operator=(P other) noexcept { swap(other); return *this; }

    // Takes over a reference the caller already owns, typically the one `new` gave.
    static P adopt(T* object) noexcept { P p; p.m_ptr = object; return p; }
    // Adds a reference of its own to an object someone else owns.
    static P share(T* object) noexcept { P p; p.m_ptr = object; p.retain(); return p; }

    T* get() const noexcept { return m_ptr; }
    T* operator->() const noexcept { return m_ptr; }
    T& operator*() const noexcept { return *m_ptr; }
    explicit operator bool() const noexcept { return m_ptr != nullptr; }

    // Gives up ownership without releasing; the caller now owns the reference.
    T* detach() noexcept { return std::exchange(m_ptr, nullptr); }
    void reset() noexcept { P().swap(*this); }
    void swap(P& other) noexcept { std::swap(m_ptr, other.m_ptr); }

private:
    void retain() const noexcept { if (m_ptr) static_cast<const IBase*>(m_ptr)->addRef(); }
    void drop() noexcept { if (m_ptr) static_cast<const IBase*>(std::exchange(m_ptr, nullptr))->release(); }

    T* m_ptr = nullptr;
};

// Owning pointer to a const interface.
template <class T>
using PC = P<const T>;

template <class T>
P<T> adopt(T* object) noexcept { return P<T>::adopt(object); }

template <class T>
P<T> share(T* object) noexcept { return P<T>::share(object); }

// Creates an object and adopts its first reference.
template <class T, class... Args>
P<T> make(Args&&... args) { return P<T>::adopt(new T(std::forward<Args>(args)...)); }

// Checked conversion to another interface of the same object; raises CCastError when the
// object does not implement it. Null stays null.
template <class T, class U>
P<T> cast(const P<U>& from) {
    if (!from) return nullptr;
    T* to = dynamic_cast<T*>(from.get());
    if (!to) throwCastError(from.get(), typeid(T));
    return P<T>::share(to);
}

// Unchecked query: null when the object does not implement the interface.
template <class T, class U>
P<T> query(const P<U>& from) noexcept {
    return P<T>::share(dynamic_cast<T*>(from.get()));
}

template <class T, class U>
bool operator==(const P<T>& a, const P<U>& b) noexcept { return a.get() == b.get(); }
template <class T, class U>
bool operator!=(const P<T>& a, const P<U>& b) noexcept { return a.get() != b.get(); }
template <class T>
bool operator==(const P<T>& a, std::nullptr_t) noexcept { return !a; }
template <class T>
bool operator!=(const P<T>& a, std::nullptr_t) noexcept { return bool(a); }

} // namespace zuno

template <class T>
struct std::hash<zuno::P<T>> {
    size_t operator()(const zuno::P<T>& p) const noexcept { return std::hash<T*>()(p.get()); }
};
