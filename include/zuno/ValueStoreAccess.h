#pragma once

#include <cstdint>

namespace zuno {

// How a value store is opened. Read and Write guard the store's reading and writing
// operations. DiscardUnreadable opens a store file that cannot be parsed as an empty store
// (which then replaces the file when it is stored); without it such a file raises its
// parse error and is left alone.
enum class ValueStoreAccess : uint32_t {
    Read = 1,
    Write = 2,
    ReadWrite = 3,
    DiscardUnreadable = 4,
};

constexpr ValueStoreAccess operator|(ValueStoreAccess a, ValueStoreAccess b) {
    return ValueStoreAccess(uint32_t(a) | uint32_t(b));
}

// Whether `access` holds every flag of `flags`.
constexpr bool hasAccess(ValueStoreAccess access, ValueStoreAccess flags) {
    return (uint32_t(access) & uint32_t(flags)) == uint32_t(flags);
}

} // namespace zuno
