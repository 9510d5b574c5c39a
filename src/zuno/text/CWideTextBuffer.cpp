#include <zuno/CWideTextBuffer.h>

#include "text/CCompactWideString.h"
#include "text/unicode.h"
#include "text/utf8Decode.h"

#include <zuno/CException.h>
#include <zuno/CString.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace zuno {

namespace {

constexpr bool WideIsUTF16 = sizeof(wchar_t) == sizeof(char16_t);

// Characters as the wide text object counts them: a surrogate pair is one, a lone half
// one as well. Passing the count spares the text object a decoding pass.
int32_t countChars(const wchar_t* text, size_t size) {
    if (!WideIsUTF16) return int32_t(size);
    size_t pairs = 0;
    for (size_t i = 0; i + 1 < size; ++i) {
        if (unicode::isHighSurrogate(char32_t(text[i])) && unicode::isLowSurrogate(char32_t(text[i + 1]))) {
            ++pairs;
            ++i;
        }
    }
    return int32_t(size - pairs);
}

} // namespace

CWideTextBuffer::~CWideTextBuffer() {
    if (!isInline()) std::free(m_data);
}

void CWideTextBuffer::grow(size_t count) {
    size_t capacity = m_capacity * 2;
    if (capacity < m_size + count) capacity = m_size + count;
    void* data = std::realloc(isInline() ? nullptr : m_data, (capacity + 1) * sizeof(wchar_t));
    if (!data) throw std::bad_alloc();
    if (isInline()) std::memcpy(data, m_inline, m_size * sizeof(wchar_t));
    m_data = static_cast<wchar_t*>(data);
    m_capacity = capacity;
}

void CWideTextBuffer::appendChar(char32_t c) {
    if (WideIsUTF16 && c >= 0x10000) {
        unicode::encodeUTF16(c, extend(2));
    } else {
        append(wchar_t(c));
    }
}

void CWideTextBuffer::appendUTF16(const char16_t* units, size_t count) {
    wchar_t* out = extend(count);
    if (WideIsUTF16) {
        for (size_t i = 0; i < count; ++i) out[i] = wchar_t(units[i]);
        return;
    }
    size_t written = 0;
    for (size_t i = 0; i < count; ++i) {
        const char32_t unit = units[i];
        wchar_t* previous = out + written - 1;
        const size_t before = m_size - count + written;  // characters in front of out[written]
        if (unicode::isLowSurrogate(unit) && before > 0 && unicode::isHighSurrogate(char32_t(*previous))) {
            *previous = wchar_t(unicode::combineSurrogates(char32_t(*previous), unit));
        } else {
            out[written++] = wchar_t(unit);
        }
    }
    shrink(count - written);
}

void CWideTextBuffer::appendUTF8(const char* text, size_t count) {
    const auto* p = reinterpret_cast<const unsigned char*>(text);
    const auto* end = p + count;
    while (p != end) {
        // A run of ASCII in one go.
        const unsigned char* ascii = p;
        while (ascii != end && *ascii < 0x80) ++ascii;
        if (ascii != p) {
            appendBytes(reinterpret_cast<const char*>(p), size_t(ascii - p));
            p = ascii;
            continue;
        }
        appendChar(decodeUTF8(p, end));
    }
}

String CWideTextBuffer::toString() const {
    return String(CCompactWideString::create(m_data, m_size, countChars(m_data, m_size)));
}

String CWideTextBuffer::detachString() {
    if (isInline()) {
        String text = toString();
        m_size = 0;
        return text;
    }
    m_data[m_size] = 0;
    if (m_capacity / 2 > m_size + InlineCapacity) {  // a long-lived text should not keep much unused room
        if (void* trimmed = std::realloc(m_data, (m_size + 1) * sizeof(wchar_t))) m_data = static_cast<wchar_t*>(trimmed);
    }
    const int32_t bytes = int32_t(m_size * sizeof(wchar_t));
    const int32_t chars = countChars(m_data, m_size);
    wchar_t* data = std::exchange(m_data, m_inline);
    m_size = 0;
    m_capacity = InlineCapacity;
    try {
        return String(make<CWCharString>(data, bytes, CString::Adopt, true, chars));
    } catch (...) {
        std::free(data);
        throw;
    }
}

} // namespace zuno
