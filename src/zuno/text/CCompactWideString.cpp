#include "text/CCompactWideString.h"

#include <cstring>

namespace zuno {

P<IString> CCompactWideString::create(const wchar_t* text, size_t count, int32_t charCount) {
    return P<IString>::adopt(new (TextRoom{(count + 1) * sizeof(wchar_t)}) CCompactWideString(text, count, charCount));
}

CCompactWideString::CCompactWideString(const wchar_t* text, size_t count, int32_t charCount)
    : CWCharString(storeBehind(this, text, count), int32_t(count * sizeof(wchar_t)), CString::Borrow, true,
                   charCount) {}

const wchar_t* CCompactWideString::storeBehind(CCompactWideString* self, const wchar_t* text, size_t count) {
    static_assert(sizeof(CCompactWideString) % alignof(wchar_t) == 0, "the text follows the object");
    wchar_t* storage = reinterpret_cast<wchar_t*>(reinterpret_cast<char*>(self) + sizeof(CCompactWideString));
    if (count) std::memcpy(storage, text, count * sizeof(wchar_t));
    storage[count] = 0;
    return storage;
}

} // namespace zuno
