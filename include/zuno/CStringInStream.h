#pragma once

#include <zuno/CObject.h>
#include <zuno/IPeekableInStream.h>
#include <zuno/String.h>

#include <string>

namespace zuno {

// Reads the characters of a String as 16-bit UTF-16 code units in the machine's byte
// order, two bytes per unit. Text already stored as UTF-16 is read in place; other text
// is converted once, up front. A null String reads as an empty one.
class CStringInStream : public CObject, public IPeekableInStream {
public:
    explicit CStringInStream(const String& text);

    int32_t read(void* buffer, int32_t size) override;
    int32_t peek(void* buffer, int32_t size) override;
    const void* peekBuffered(int32_t& size) override;
    int32_t skip(int32_t size) override;

private:
    String m_text;             // keeps borrowed units alive
    std::u16string m_converted;
    const char* m_bytes = nullptr;
    int32_t m_byteCount = 0;
    int32_t m_position = 0;    // in bytes
};

} // namespace zuno
