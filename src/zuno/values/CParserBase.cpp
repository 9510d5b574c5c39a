#include <zuno/CParserBase.h>
#include <zuno/CError.h>
#include <zuno/CStringFormat.h>

#include <cstdint>
#include <cstring>

#include "text/unicode.h"

namespace zuno {

CParserBase::CParserBase(P<IPeekableInStream> in) : m_in(std::move(in)) {}

CParserBase::~CParserBase() {
    // A parser that stops early (an error, or the end of its grammar) leaves the stream
    // right behind the last character it consumed.
    commit();
}

void CParserBase::commit() {
    if (m_windowStart && m_in) {
        const int64_t consumed = m_cur - m_windowStart;
        m_in->skip(int32_t(consumed * int64_t(sizeof(char16_t))));
        m_windowPosition += consumed;
    }
    m_windowStart = m_cur = m_end = nullptr;
}

bool CParserBase::fill() {
    commit();
    if (!m_in) return false;
    int32_t size = 0;
    const void* data = m_in->peekBuffered(size);
    if (size >= int32_t(sizeof(char16_t)) && reinterpret_cast<uintptr_t>(data) % alignof(char16_t) == 0) {
        m_windowStart = m_cur = static_cast<const char16_t*>(data);
    } else {
        size = m_in->peek(m_local, int32_t(sizeof m_local));
        if (size < int32_t(sizeof(char16_t))) return false;
        m_windowStart = m_cur = m_local;
    }
    m_end = m_cur + size / int32_t(sizeof(char16_t));
    return true;
}

int32_t CParserBase::peekChars(char16_t* out, int32_t count) {
    if (m_end - m_cur >= count) {
        std::memcpy(out, m_cur, size_t(count) * sizeof(char16_t));
        return count;
    }
    commit();
    if (!m_in) return 0;
    return m_in->peek(out, count * int32_t(sizeof(char16_t))) / int32_t(sizeof(char16_t));
}

void CParserBase::raise(const String& message) const {
    raiseError(message);
    throw CParseError(message);  // for a subclass whose raiseError does not throw
}

void CParserBase::expectChar(char16_t expected) {
    const int64_t position = getPosition();
    const int32_t found = readChar();
    if (found == EndOfStream) raise(L"unexspected end of stream");
    if (found == expected) return;
    raise(CStringFormat(L"Expected char '%s' not found at postion %d - found '%s'")
                   .doString(String::fromChar(expected))
                   .doInt(position)
                   .doString(describeChar(found))
                   .getResult());
}

String CParserBase::describeChar(int32_t c) {
    if (unicode::isHighSurrogate(char32_t(c))) {
        const int32_t next = peekChar();
        if (unicode::isLowSurrogate(char32_t(next))) return String::fromChar(unicode::combineSurrogates(char32_t(c), char32_t(next)));
    }
    return String::fromChar(char32_t(c));
}

} // namespace zuno
