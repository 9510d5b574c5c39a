#include <zuno/CStringInStream.h>

#include "text/unicode.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace zuno {

namespace {

void appendUnits(std::u16string& out, char32_t c) {
    char16_t units[2];
    out.append(units, size_t(unicode::encodeUTF16(c, units) - units));
}

} // namespace

CStringInStream::CStringInStream(const String& text) : m_text(text) {
    const Encoding encoding = text.getEncoding();
    const bool wideIsUTF16 = sizeof(wchar_t) == sizeof(char16_t);
    if (encoding == Encoding::UTF16 || (encoding == Encoding::Wide && wideIsUTF16)) {
        m_bytes = static_cast<const char*>(text->getData());
        m_byteCount = text->getByteLength();
        return;
    }
    if (encoding == Encoding::Wide) {
        const wchar_t* chars = static_cast<const wchar_t*>(text->getData());
        const size_t count = size_t(text->getByteLength()) / sizeof(wchar_t);
        // One unit per character until the first one beyond the basic plane.
        m_converted.resize(count);
        char16_t* units = &m_converted[0];
        size_t i = 0;
        for (; i < count && (uint32_t(chars[i]) >> 16) == 0; ++i) units[i] = char16_t(chars[i]);
        m_converted.resize(i);
        for (; i < count; ++i) appendUnits(m_converted, char32_t(chars[i]));
    } else {
        for (char32_t c : text.getChars()) appendUnits(m_converted, c);
    }
    m_bytes = reinterpret_cast<const char*>(m_converted.data());
    m_byteCount = int32_t(m_converted.size() * sizeof(char16_t));
}

int32_t CStringInStream::read(void* buffer, int32_t size) {
    const int32_t count = peek(buffer, size);
    m_position += count;
    return count;
}

int32_t CStringInStream::peek(void* buffer, int32_t size) {
    const int32_t count = std::clamp(m_byteCount - m_position, 0, std::max(size, 0));
    if (count > 0) std::memcpy(buffer, m_bytes + m_position, size_t(count));
    return count;
}

const void* CStringInStream::peekBuffered(int32_t& size) {
    size = m_byteCount - m_position;
    return m_bytes + m_position;
}

int32_t CStringInStream::skip(int32_t size) {
    const int32_t count = std::clamp(m_byteCount - m_position, 0, std::max(size, 0));
    m_position += count;
    return count;
}

} // namespace zuno
