#pragma once

#include <zuno/Encoding.h>
#include <zuno/IComparable.h>

#include <cstdint>
#include <string>
#include <vector>

namespace zuno {

class String;

// An immutable text object in one storage encoding. Positions and lengths count
// characters (Unicode code points), not bytes or code units; searches answer -1 when
// nothing is found. Operations that make new text return wide strings.
class IString : public virtual IComparable {
public:
    // Storage.
    virtual Encoding getEncoding() const = 0;
    // The encoded bytes, always followed by an encoded NUL: `const char*` data for the
    // narrow encodings, `const wchar_t*` for Encoding::Wide.
    virtual const void* getData() const = 0;
    virtual int32_t getByteLength() const = 0;
    // The null string of an encoding stands for absent text; it is not the empty string.
    virtual bool isNull() const = 0;

    // Characters.
    virtual int32_t length() const = 0;
    virtual bool isEmpty() const = 0;
    // Raises CInvalidArgError for an index outside 0 .. length()-1.
    virtual char32_t charAt(int32_t index) const = 0;
    virtual std::u32string getChars() const = 0;

    // Comparison: ordinal by code point, case-insensitive (towlower), or by the locale's
    // collation (wcscoll).
    virtual int32_t compare(const String& other) const = 0;
    virtual int32_t compareNoCase(const String& other) const = 0;
    virtual int32_t collate(const String& other) const = 0;
    virtual bool equals(const String& other) const = 0;
    virtual bool equalsNoCase(const String& other) const = 0;
    // Equal texts hash equally whatever their encodings.
    virtual size_t hash() const = 0;

    // Search from a character position; rfind's `from` is the last position considered
    // (-1: the end).
    virtual int32_t findChar(char32_t c, int32_t from) const = 0;
    virtual int32_t find(const String& text, int32_t from) const = 0;
    virtual int32_t rfindChar(char32_t c, int32_t from) const = 0;
    virtual int32_t rfind(const String& text, int32_t from) const = 0;
    virtual int32_t findAnyOf(const String& chars, int32_t from) const = 0;
    virtual int32_t rfindAnyOf(const String& chars, int32_t from) const = 0;
    virtual bool startsWith(const String& prefix) const = 0;
    virtual bool endsWith(const String& suffix) const = 0;
    virtual bool startsWithNoCase(const String& prefix) const = 0;
    virtual bool endsWithNoCase(const String& suffix) const = 0;

    // New text. Substring takes [start, end); an end of -1 means the end of the text;
    // positions are clamped to the text.
    virtual String substring(int32_t start, int32_t end) const = 0;
    virtual String concat(const String& other) const = 0;
    virtual String toUpper() const = 0;
    virtual String toLower() const = 0;
    // Trimming removes white space (iswspace).
    virtual String trim() const = 0;
    virtual String trimLeft() const = 0;
    virtual String trimRight() const = 0;
    // Pieces between occurrences of a non-empty separator, empty pieces included.
    virtual std::vector<String> split(const String& separator) const = 0;
    // Every occurrence of `from` (non-empty) replaced by `to`.
    virtual String replace(const String& from, const String& to) const = 0;

    // Numbers, with optional surrounding white space and sign. Failures raise CParseError
    // with "Error parsing integer." or "Error parsing floating point value.".
    virtual int32_t toInt32() const = 0;
    virtual int64_t toInt64() const = 0;
    virtual uint64_t toUInt64() const = 0;
    virtual double toDouble() const = 0;

    // This text in another encoding: shared when it already is in that encoding, the
    // target's null string when it is null.
    virtual String convertTo(Encoding encoding) const = 0;
};

} // namespace zuno
