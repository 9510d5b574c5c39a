#pragma once

#include <zuno/IInStream.h>

#include <cstdint>

namespace zuno {

// An input stream that can look ahead without consuming.
class IPeekableInStream : public virtual IInStream {
public:
    // Copies up to `size` bytes ahead into `buffer` without consuming them; returns how
    // many were copied (fewer than asked only at the end of the stream).
    virtual int32_t peek(void* buffer, int32_t size) = 0;
    // The bytes ahead that the stream already holds in memory, without consuming or
    // copying them: `size` receives their count, which is at least 1 unless the stream
    // has ended. The pointer is valid until the next call that consumes or peeks.
    virtual const void* peekBuffered(int32_t& size) = 0;
    // Consumes up to `size` bytes without copying them; returns how many were consumed.
    virtual int32_t skip(int32_t size) = 0;
};

} // namespace zuno
