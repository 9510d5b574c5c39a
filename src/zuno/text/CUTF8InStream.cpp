#include <zuno/CUTF8InStream.h>

#include "text/utf8Decode.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

namespace zuno {

CUTF8InStream::CUTF8InStream(std::string bytes) : m_bytes(std::move(bytes)) {}

size_t CUTF8InStream::decode(char16_t* out, size_t room, size_t& next) const {
    const auto* begin = reinterpret_cast<const unsigned char*>(m_bytes.data());
    const auto* p = begin + next;
    const auto* end = begin + m_bytes.size();
    size_t units = 0;
    while (p != end && units + 2 <= room) {
        // Eight ASCII bytes at a time: most JSON and XML text is ASCII.
        while (end - p >= 8 && room - units >= 8) {
            uint64_t eight;
            std::memcpy(&eight, p, 8);
            if (eight & 0x8080808080808080u) break;
            for (int i = 0; i < 8; ++i) out[units + size_t(i)] = p[i];
            p += 8;
            units += 8;
        }
        if (p == end || units + 2 > room) break;
        if (*p < 0x80) {
            out[units++] = *p++;
            continue;
        }
        units = size_t(unicode::encodeUTF16(decodeUTF8(p, end), out + units) - out);
    }
    next = size_t(p - begin);
    return units;
}

size_t CUTF8InStream::prepare() {
    const size_t ready = m_windowBytes - m_readBytes;
    if (ready >= sizeof(char16_t) || m_next == m_bytes.size()) return ready;
    // Keep an unread half unit, if any, and decode behind it.
    char* window = reinterpret_cast<char*>(m_window);
    std::memmove(window, window + m_readBytes, ready);
    m_readBytes = 0;
    const size_t units = ready / sizeof(char16_t) + (ready % sizeof(char16_t) ? 1 : 0);
    m_windowBytes = ready + decode(m_window + units, WindowUnits - units, m_next) * sizeof(char16_t);
    if (ready % sizeof(char16_t)) {
        // The half unit stays where it is; the new units start behind its unit.
        std::memmove(window + ready, window + units * sizeof(char16_t), m_windowBytes - ready);
    }
    return m_windowBytes;
}

int32_t CUTF8InStream::read(void* buffer, int32_t size) {
    return skip(peek(buffer, size));
}

int32_t CUTF8InStream::peek(void* buffer, int32_t size) {
    if (size <= 0) return 0;
    const size_t wanted = size_t(size);
    const size_t ready = std::min(prepare(), wanted);
    std::memcpy(buffer, reinterpret_cast<const char*>(m_window) + m_readBytes, ready);
    if (ready == wanted || m_next == m_bytes.size()) return int32_t(ready);

    // Beyond the window: decode the rest without moving on.
    std::u16string more((wanted - ready) / sizeof(char16_t) + 2, u'\0');
    size_t next = m_next;
    const size_t moreBytes = std::min(decode(&more[0], more.size(), next) * sizeof(char16_t), wanted - ready);
    std::memcpy(static_cast<char*>(buffer) + ready, more.data(), moreBytes);
    return int32_t(ready + moreBytes);
}

const void* CUTF8InStream::peekBuffered(int32_t& size) {
    size = int32_t(prepare());
    return reinterpret_cast<const char*>(m_window) + m_readBytes;
}

int32_t CUTF8InStream::skip(int32_t size) {
    size_t left = size > 0 ? size_t(size) : 0;
    size_t skipped = 0;
    while (left > 0) {
        const size_t count = std::min(prepare(), left);
        if (count == 0) break;
        m_readBytes += count;
        skipped += count;
        left -= count;
    }
    return int32_t(skipped);
}

} // namespace zuno
