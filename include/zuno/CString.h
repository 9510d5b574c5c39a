#pragma once

#include <zuno/CObject.h>
#include <zuno/ICharEncoding.h>
#include <zuno/IString.h>
#include <zuno/String.h>

namespace zuno {

// The common implementation of IString over encoded bytes. Subclasses fix the encoding.
class CString : public CObject, public IString {
public:
    enum StorageMode : int32_t {
        Copy = 0,    // copies the bytes into a buffer of its own, with a terminator
        Adopt = 1,   // takes over a buffer allocated with std::malloc
        Borrow = 2,  // refers to the caller's NUL-terminated bytes (literals)
    };

    // A byte length of -1 means up to the first encoded NUL; a character count of -1 is
    // computed at once. Text that is adopted or borrowed without a terminator is copied,
    // so that getData() always yields terminated text.
    CString(const void* data, int32_t byteLength, int32_t mode, bool terminated, const ICharEncoding& encoding,
            int32_t charCount = -1);
    ~CString() override;

    CString(const CString&) = delete;
    CString& operator=(const CString&) = delete;

    // IComparable: ordinal comparison with another IString.
    int32_t compareTo(const IComparable& other) const override;

    const void* getData() const override { return m_data; }
    int32_t getByteLength() const override { return m_byteLength; }
    bool isNull() const override { return false; }
    const ICharEncoding& getCharEncoding() const { return *m_encoding; }

    int32_t length() const override { return m_charCount; }
    bool isEmpty() const override { return m_charCount == 0; }
    char32_t charAt(int32_t index) const override;
    std::u32string getChars() const override;

    int32_t compare(const String& other) const override;
    int32_t compareNoCase(const String& other) const override;
    int32_t collate(const String& other) const override;
    bool equals(const String& other) const override;
    bool equalsNoCase(const String& other) const override;
    size_t hash() const override;

    int32_t findChar(char32_t c, int32_t from) const override;
    int32_t find(const String& text, int32_t from) const override;
    int32_t rfindChar(char32_t c, int32_t from) const override;
    int32_t rfind(const String& text, int32_t from) const override;
    int32_t findAnyOf(const String& chars, int32_t from) const override;
    int32_t rfindAnyOf(const String& chars, int32_t from) const override;
    bool startsWith(const String& prefix) const override;
    bool endsWith(const String& suffix) const override;
    bool startsWithNoCase(const String& prefix) const override;
    bool endsWithNoCase(const String& suffix) const override;

    String substring(int32_t start, int32_t end) const override;
    String concat(const String& other) const override;
    String toUpper() const override;
    String toLower() const override;
    String trim() const override;
    String trimLeft() const override;
    String trimRight() const override;
    std::vector<String> split(const String& separator) const override;
    String replace(const String& from, const String& to) const override;

    int32_t toInt32() const override;
    int64_t toInt64() const override;
    uint64_t toUInt64() const override;
    double toDouble() const override;

    String convertTo(Encoding encoding) const override;

    bool isTerminated() const { return m_terminated; }
    bool isOwned() const { return m_owned; }

private:
    const char* m_data = nullptr;
    int32_t m_byteLength = 0;
    bool m_terminated = false;
    bool m_owned = false;
    const ICharEncoding* m_encoding;  // pinned for the life of the process
    int32_t m_charCount = 0;
};

// One text class per storage encoding.
template <Encoding E>
class TEncodedString : public CString {
public:
    TEncodedString(const void* data, int32_t byteLength, int32_t mode, bool terminated = true, int32_t charCount = -1)
        : CString(data, byteLength, mode, terminated, zuno::getCharEncoding(E), charCount) {}
    Encoding getEncoding() const override { return E; }
};

class CWCharString : public TEncodedString<Encoding::Wide> { using TEncodedString::TEncodedString; };
class CCPString : public TEncodedString<Encoding::CodePage> { using TEncodedString::TEncodedString; };
class CUTF8String : public TEncodedString<Encoding::UTF8> { using TEncodedString::TEncodedString; };
class CUTF16String : public TEncodedString<Encoding::UTF16> { using TEncodedString::TEncodedString; };
class CUTF32String : public TEncodedString<Encoding::UTF32> { using TEncodedString::TEncodedString; };
class CLatin1String : public TEncodedString<Encoding::Latin1> { using TEncodedString::TEncodedString; };

// The one null string of an encoding: no characters, and isNull() answers true.
template <class S>
class TNullString : public S {
public:
    TNullString() : S(nullTerminator(), 0, CString::Borrow, true, 0) {}
    bool isNull() const override { return true; }

private:
    static const void* nullTerminator() {
        static const char32_t zero = 0;
        return &zero;
    }
};

// Builds a text object of an encoding from its encoded bytes (copied); a character count of
// -1 is computed.
P<IString> createString(Encoding encoding, const void* data, int32_t byteLength, int32_t charCount = -1);

} // namespace zuno
