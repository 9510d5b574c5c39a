#pragma once

#include <zuno/CObject.h>
#include <zuno/IPeekableInStream.h>
#include <zuno/P.h>
#include <zuno/String.h>

#include <cstdint>

namespace zuno {

// Base of the text parsers: owns the input stream and reads it as 16-bit characters, two
// bytes each. Reading works on a window of characters the stream already holds in memory,
// so peeking and consuming a character are inline pointer operations; the stream is asked
// again only when the window is used up. The stream is told what was consumed when the
// window is replaced and by commit(), so it never moves past the last consumed character.
class CParserBase : public CObject {
public:
    static constexpr int32_t EndOfStream = -1;

    // A null stream reads as an empty one.
    explicit CParserBase(P<IPeekableInStream> in);
    ~CParserBase() override;

protected:
    // The next character, or EndOfStream; not consumed.
    int32_t peekChar() {
        if (m_cur != m_end || fill()) return *m_cur;
        return EndOfStream;
    }
    // The next character, or EndOfStream; consumed.
    int32_t readChar() {
        if (m_cur != m_end || fill()) return *m_cur++;
        return EndOfStream;
    }
    // Consumes the character the last peekChar() returned (which must not be EndOfStream).
    void skipChar() { ++m_cur; }

    // Skips tab, line feed, carriage return and blank, and returns the next character
    // without consuming it. Raises "end of stream found while advancing ignored chars"
    // when the stream ends first.
    int32_t skipIgnoredChars() {
        while (m_cur != m_end || fill()) {
            const char16_t c = *m_cur;
            if (c != u' ' && c != u'\n' && c != u'\r' && c != u'\t') return c;
            ++m_cur;
        }
        raise(L"end of stream found while advancing ignored chars");
    }
    // Consumes the next character, which must be `expected`.
    void expectChar(char16_t expected);
    // Copies up to `count` characters ahead into `out` without consuming them; returns
    // how many there were.
    int32_t peekChars(char16_t* out, int32_t count);

    // A character just read, for a message: a high surrogate together with the low one
    // that follows it (not consumed).
    String describeChar(int32_t c);

    // Characters consumed since the start of the stream.
    int64_t getPosition() const { return m_windowPosition + (m_cur - m_windowStart); }

    // Tells the stream how much has been consumed; the window starts afresh.
    void commit();
    // Replaces a used-up window; false at the end of the stream.
    bool fill();

    // Raises the parser's error (raiseError) with `message`.
    [[noreturn]] void raise(const String& message) const;
    [[noreturn]] void raise(const wchar_t* message) const { raise(String(message)); }
    // Throws the parser's own error class with `message`.
    virtual void raiseError(const String& message) const = 0;

    // The current window, for subclasses' bulk scanning: [m_cur, m_end) is unread.
    const char16_t* m_cur = nullptr;
    const char16_t* m_end = nullptr;

private:
    P<IPeekableInStream> m_in;
    const char16_t* m_windowStart = nullptr;
    int64_t m_windowPosition = 0;
    // Holds a copy when the stream's own window is unaligned or splits a character.
    char16_t m_local[64];
};

} // namespace zuno
