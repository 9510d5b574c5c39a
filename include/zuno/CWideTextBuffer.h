#pragma once

#include <zuno/String.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zuno {

// A growing buffer of wide characters (UTF-16 code units where wchar_t has 16 bits, code
// points where it has 32) that becomes a wide String. Short texts stay in the object
// itself; a long one moves to the heap and becomes a String without a further copy. The
// hot appends are inline.
class CWideTextBuffer {
public:
    static constexpr size_t InlineCapacity = 64;

    CWideTextBuffer() = default;
    ~CWideTextBuffer();
    CWideTextBuffer(const CWideTextBuffer&) = delete;
    CWideTextBuffer& operator=(const CWideTextBuffer&) = delete;

    size_t size() const { return m_size; }
    const wchar_t* data() const { return m_data; }
    void clear() { m_size = 0; }

    void append(wchar_t c) {
        if (m_size == m_capacity) grow(1);
        m_data[m_size++] = c;
    }
    void append(const wchar_t* text, size_t count) {
        wchar_t* out = extend(count);
        if (count) std::memcpy(out, text, count * sizeof(wchar_t));
    }
    // Appends `count` times the character `c`.
    void appendRepeated(wchar_t c, size_t count) {
        wchar_t* out = extend(count);
        for (size_t i = 0; i < count; ++i) out[i] = c;
    }
    // Bytes taken one by one as characters 0-255 (ASCII output of the C library).
    void appendBytes(const char* text, size_t count) {
        wchar_t* out = extend(count);
        for (size_t i = 0; i < count; ++i) out[i] = wchar_t(static_cast<unsigned char>(text[i]));
    }
    // One character, as a surrogate pair where wchar_t has 16 bits.
    void appendChar(char32_t c);
    // UTF-16 code units exactly as they are where wchar_t has 16 bits; where it has 32, a
    // high surrogate followed by a low one becomes one character and lone halves stay.
    void appendUTF16(const char16_t* units, size_t count);
    // UTF-8 text; invalid sequences give U+FFFD.
    void appendUTF8(const char* text, size_t count);
    // Room for `count` more characters at the end, which the caller fills.
    wchar_t* extend(size_t count) {
        if (m_capacity - m_size < count) grow(count);
        wchar_t* out = m_data + m_size;
        m_size += count;
        return out;
    }
    // Room for `count` characters in all, so that appending up to there does not move the text.
    void reserve(size_t count) {
        if (count > m_capacity) grow(count - m_size);
    }
    // Gives up `count` characters at the end.
    void shrink(size_t count) { m_size -= count; }

    // A copy of the text as a wide String; the buffer keeps its text.
    String toString() const;
    // The text as a wide String, which takes a heap buffer over instead of copying it; the
    // buffer is empty after.
    String detachString();

private:
    void grow(size_t count);
    bool isInline() const { return m_data == m_inline; }

    wchar_t m_inline[InlineCapacity + 1];
    wchar_t* m_data = m_inline;
    size_t m_size = 0;
    size_t m_capacity = InlineCapacity;  // not counting room for a terminator, which is always there
};

} // namespace zuno
