#pragma once

#include <zuno/IBase.h>

#include <cstdint>

namespace zuno {

// A source of bytes read from front to back.
class IInStream : public virtual IBase {
public:
    // Copies up to `size` bytes into `buffer` and consumes them; returns how many were
    // copied, 0 once the stream has ended.
    virtual int32_t read(void* buffer, int32_t size) = 0;
};

} // namespace zuno
