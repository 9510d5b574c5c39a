#pragma once

#include <zuno/CObject.h>
#include <zuno/ICharEncoding.h>

// The codecs behind the storage encodings, one shared instance each (getCharEncoding).
namespace zuno {

class CCharEncodingBase : public CObject, public ICharEncoding {
public:
    explicit CCharEncodingBase(int32_t unitSize) : m_unitSize(unitSize) {}
    int32_t getUnitSize() const override { return m_unitSize; }
    int32_t measure(const void* data) const override;
    // Counts by decoding; codecs with a cheaper way override it.
    int32_t countChars(const void* data, int32_t byteLength) const override;

private:
    int32_t m_unitSize;
};

// Strict UTF-8: overlong forms, surrogates and values above U+10FFFF decode as U+FFFD, one
// per maximal invalid subsequence.
class CUTF8CharEncoding : public CCharEncodingBase {
public:
    CUTF8CharEncoding() : CCharEncodingBase(1) {}
    int32_t countChars(const void* data, int32_t byteLength) const override;
    void decode(const void* data, int32_t byteLength, std::u32string& out) const override;
    void encode(const char32_t* chars, size_t count, std::string& out) const override;
};

// char16_t units; an unpaired surrogate decodes as U+FFFD.
class CUTF16CharEncoding : public CCharEncodingBase {
public:
    CUTF16CharEncoding() : CCharEncodingBase(2) {}
    int32_t countChars(const void* data, int32_t byteLength) const override;
    void decode(const void* data, int32_t byteLength, std::u32string& out) const override;
    void encode(const char32_t* chars, size_t count, std::string& out) const override;
};

// char32_t units; surrogates and values above U+10FFFF decode as U+FFFD.
class CUTF32CharEncoding : public CCharEncodingBase {
public:
    CUTF32CharEncoding() : CCharEncodingBase(4) {}
    int32_t countChars(const void*, int32_t byteLength) const override { return byteLength / 4; }
    void decode(const void* data, int32_t byteLength, std::u32string& out) const override;
    void encode(const char32_t* chars, size_t count, std::string& out) const override;
};

// One byte per character; characters above U+00FF encode as "?".
class CLatin1CharEncoding : public CCharEncodingBase {
public:
    CLatin1CharEncoding() : CCharEncodingBase(1) {}
    int32_t countChars(const void*, int32_t byteLength) const override { return byteLength; }
    void decode(const void* data, int32_t byteLength, std::u32string& out) const override;
    void encode(const char32_t* chars, size_t count, std::string& out) const override;
};

// The process's narrow code page; platform code (win32/, posix/CCPCharEncoding.cpp).
class CCPCharEncoding : public CCharEncodingBase {
public:
    CCPCharEncoding();
    void decode(const void* data, int32_t byteLength, std::u32string& out) const override;
    void encode(const char32_t* chars, size_t count, std::string& out) const override;

private:
    char32_t m_byteTable[256] = {};  // Windows: each byte's character, read once
};

} // namespace zuno
