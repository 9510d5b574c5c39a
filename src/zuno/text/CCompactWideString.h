#pragma once

#include <zuno/CSmallObject.h>
#include <zuno/CString.h>
#include <zuno/P.h>

#include <cstddef>
#include <cstdint>

namespace zuno {

// A wide text object that keeps its characters in the same allocation as itself: one
// allocation per text instead of two, for the many small texts that parsing and
// formatting make; small ones are carved from CSmallObject's chunks.
class CCompactWideString final : public CWCharString {
public:
    // A copy of `count` wide characters; `charCount` is their number of characters as the
    // wide encoding counts them.
    static P<IString> create(const wchar_t* text, size_t count, int32_t charCount);

private:
    struct TextRoom {
        std::size_t bytes;
    };

    static void* operator new(std::size_t size, TextRoom room) { return CSmallObject::allocate(size + room.bytes); }
    // Frees the memory when the constructor fails.
    static void operator delete(void* memory, TextRoom) { CSmallObject::free(memory); }

public:
    static void operator delete(void* memory) { CSmallObject::free(memory); }

private:
    CCompactWideString(const wchar_t* text, size_t count, int32_t charCount);
    // Copies the text behind the object and terminates it.
    static const wchar_t* storeBehind(CCompactWideString* self, const wchar_t* text, size_t count);
};

} // namespace zuno
