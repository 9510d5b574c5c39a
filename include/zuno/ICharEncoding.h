#pragma once

#include <zuno/Encoding.h>
#include <zuno/IBase.h>

#include <cstdint>
#include <string>

namespace zuno {

// Reads and writes one character encoding. Decoding never fails: input that is not valid
// in the encoding yields U+FFFD (or what the encoding documents instead).
class ICharEncoding : public virtual IBase {
public:
    // Size of one code unit in bytes, which is also the size of an encoded NUL.
    virtual int32_t getUnitSize() const = 0;
    // Bytes before the first encoded NUL.
    virtual int32_t measure(const void* data) const = 0;
    virtual int32_t countChars(const void* data, int32_t byteLength) const = 0;
    // Appends the characters of `data` to `out`.
    virtual void decode(const void* data, int32_t byteLength, std::u32string& out) const = 0;
    // Appends the encoded form of `chars` to `out` (bytes; no terminator).
    virtual void encode(const char32_t* chars, size_t count, std::string& out) const = 0;
};

// The shared codec of a storage encoding (Wide uses UTF-16 or UTF-32 by wchar_t's size).
const ICharEncoding& getCharEncoding(Encoding encoding);

} // namespace zuno
