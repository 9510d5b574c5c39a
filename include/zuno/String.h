#pragma once

#include <zuno/IString.h>
#include <zuno/P.h>

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace zuno {

// The value type for all text: one counted reference to an immutable IString. Never an
// empty pointer: absent text is the null string of its encoding. Copies share the text.
class String {
public:
    // The null wide string.
    String();
    // Narrow text in the code page, borrowed: the caller keeps it alive (for literals).
    String(const char* text);
    // Narrow text in the code page, copied; a length of -1 means up to the first NUL.
    String(const char* text, int32_t length);
    // Wide text, borrowed (for literals).
    String(const wchar_t* text);
    // Wide text, copied; a count of -1 means up to the first NUL.
    String(const wchar_t* text, int32_t count);
    // Wraps a text object; a null pointer gives the null wide string.
    explicit String(P<IString> text);

    // UTF-8 text, copied, kept as UTF-8.
    static String fromUTF8(const char* text, int32_t length = -1);
    static String fromUTF8(const std::string& text);
    // UTF-8 text converted into wide storage: for text that arrives as UTF-8.
    static String fromUTF8ToWide(const char* text, int32_t length = -1);
    static String fromUTF8ToWide(const std::string& text) { return fromUTF8ToWide(text.data(), int32_t(text.size())); }
    static String fromWide(const std::wstring& text) { return String(text.data(), int32_t(text.size())); }
    static String fromChars(const std::u32string& chars, Encoding encoding = Encoding::Wide);
    static String fromChar(char32_t c) { return fromChars(std::u32string(1, c)); }
    static String null(Encoding encoding);
    // An empty (not null) wide string.
    static String empty();

    // Conversions; each shares this text when it already has the target encoding.
    String toCP() const { return convertTo(Encoding::CodePage); }
    String toUTF8() const { return convertTo(Encoding::UTF8); }
    String toWide() const { return convertTo(Encoding::Wide); }
    String convertTo(Encoding encoding) const { return m_text->convertTo(encoding); }

    // The raw data of a narrow (code page, UTF-8, Latin-1) or a wide text; other
    // encodings raise CInvalidObjectStateError. The pointer lives as long as this String.
    const char* c_str() const;
    const wchar_t* wc_str() const;
    std::string toStdString() const;    // UTF-8
    std::wstring toStdWString() const;

    const P<IString>& object() const { return m_text; }
    IString* operator->() const { return m_text.get(); }

    Encoding getEncoding() const { return m_text->getEncoding(); }
    bool isNull() const { return m_text->isNull(); }
    bool isEmpty() const { return m_text->isEmpty(); }
    int32_t length() const { return m_text->length(); }
    char32_t charAt(int32_t index) const { return m_text->charAt(index); }
    std::u32string getChars() const { return m_text->getChars(); }

    int32_t compare(const String& other) const { return m_text->compare(other); }
    int32_t compareNoCase(const String& other) const { return m_text->compareNoCase(other); }
    int32_t collate(const String& other) const { return m_text->collate(other); }
    bool equals(const String& other) const { return m_text->equals(other); }
    bool equalsNoCase(const String& other) const { return m_text->equalsNoCase(other); }
    size_t hash() const { return m_text->hash(); }

    int32_t find(char32_t c, int32_t from = 0) const { return m_text->findChar(c, from); }
    int32_t find(const String& text, int32_t from = 0) const { return m_text->find(text, from); }
    int32_t rfind(char32_t c, int32_t from = -1) const { return m_text->rfindChar(c, from); }
    int32_t rfind(const String& text, int32_t from = -1) const { return m_text->rfind(text, from); }
    int32_t findAnyOf(const String& chars, int32_t from = 0) const { return m_text->findAnyOf(chars, from); }
    int32_t rfindAnyOf(const String& chars, int32_t from = -1) const { return m_text->rfindAnyOf(chars, from); }
    bool contains(const String& text) const { return find(text) >= 0; }
    bool startsWith(const String& prefix) const { return m_text->startsWith(prefix); }
    bool endsWith(const String& suffix) const { return m_text->endsWith(suffix); }
    bool startsWithNoCase(const String& prefix) const { return m_text->startsWithNoCase(prefix); }
    bool endsWithNoCase(const String& suffix) const { return m_text->endsWithNoCase(suffix); }

    String substring(int32_t start, int32_t end = -1) const { return m_text->substring(start, end); }
    String concat(const String& other) const { return m_text->concat(other); }
    String toUpper() const { return m_text->toUpper(); }
    String toLower() const { return m_text->toLower(); }
    String trim() const { return m_text->trim(); }
    String trimLeft() const { return m_text->trimLeft(); }
    String trimRight() const { return m_text->trimRight(); }
    std::vector<String> split(const String& separator) const { return m_text->split(separator); }
    String replace(const String& from, const String& to) const { return m_text->replace(from, to); }

    int32_t toInt32() const { return m_text->toInt32(); }
    int64_t toInt64() const { return m_text->toInt64(); }
    uint64_t toUInt64() const { return m_text->toUInt64(); }
    double toDouble() const { return m_text->toDouble(); }

    String& operator+=(const String& other) { return *this = concat(other); }

private:
    P<IString> m_text;
};

// Equality compares characters; a null string equals only a null string.
inline bool operator==(const String& a, const String& b) { return a.equals(b); }
inline bool operator!=(const String& a, const String& b) { return !a.equals(b); }
inline bool operator<(const String& a, const String& b) { return a.compare(b) < 0; }
inline String operator+(const String& a, const String& b) { return a.concat(b); }

// Prints the text as UTF-8 (for test diagnostics).
std::ostream& operator<<(std::ostream& out, const String& text);

} // namespace zuno

template <>
struct std::hash<zuno::String> {
    size_t operator()(const zuno::String& text) const { return text.hash(); }
};
