#pragma once

#include <zuno/CObject.h>
#include <zuno/IPeekableInStream.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace zuno {

// Reads UTF-8 text held in memory as 16-bit UTF-16 code units in the machine's byte order,
// two bytes per unit, converting a window at a time: a parser reads a file's bytes
// without a String of the whole text first. Ill-formed UTF-8 reads as U+FFFD, as the
// framework's UTF-8 text objects read it.
class CUTF8InStream : public CObject, public IPeekableInStream {
public:
    explicit CUTF8InStream(std::string bytes);

    int32_t read(void* buffer, int32_t size) override;
    int32_t peek(void* buffer, int32_t size) override;
    const void* peekBuffered(int32_t& size) override;
    int32_t skip(int32_t size) override;

private:
    static constexpr size_t WindowUnits = 4096;

    // Decodes input from byte `next` into at most `room` units; moves `next` on and returns
    // the units written.
    size_t decode(char16_t* out, size_t room, size_t& next) const;
    // Makes sure at least one unit is ready unless the input has ended; returns the bytes
    // ready.
    size_t prepare();

    std::string m_bytes;
    size_t m_next = 0;  // first input byte not yet decoded
    char16_t m_window[WindowUnits];
    size_t m_windowBytes = 0;  // decoded bytes in the window
    size_t m_readBytes = 0;    // of which consumed
};

} // namespace zuno
