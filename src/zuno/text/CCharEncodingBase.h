#pragma once

#include <zuno/CObject.h>
#include <zuno/ICharEncoding.h>

namespace zuno {

// Common part of the codecs behind the storage encodings; getCharEncoding() hands out one
// shared instance of each.
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

} // namespace zuno
