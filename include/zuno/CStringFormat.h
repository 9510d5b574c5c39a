#pragma once

#include <zuno/CObject.h>
#include <zuno/CWideTextBuffer.h>
#include <zuno/String.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace zuno {

// Fills a printf-style format text with arguments pushed one at a time:
//
//     String text = CStringFormat(L"%s has %d items").doString(name).doInt(count).getResult();
//
// A field is "%", up to five flags of " #+-0", a width (digits or "*"), a precision
// ("." and digits or "*"), one length modifier (L h j l t z I I64, accepted and ignored)
// and a conversion: c C (character), d i o u x X (integer), e E f g G (floating point),
// s S (string). "%%" is a literal "%". A "*" takes the next integer push. Widths and
// precisions are at most MaxFieldSize (4096), written or pushed; a larger one is a
// malformed field, so that no format text or push can ask for an unbounded buffer.
//
// Integers are formatted here, with these differences from printf: d, i and u follow the
// push (a signed push prints signed, an unsigned one unsigned, whatever the letter); x, X
// and o print the 64-bit value without sign; the sign is not counted against the width
// (%5d of -42 is "   -42", %05d of -42 is "-00042"); the zero flag pads even with a
// precision; the alternate form always adds its prefix ("0x0" for 0); only x uses
// lower-case digits. Floating-point, character and string fields go through the C
// library's snprintf, with exponents of at least two digits on every platform. String
// widths and precisions count characters, not bytes; a null String prints as empty text.
//
// Errors: a malformed field raises CInvalidArgError for the method
// "CStringFormat::goToNextFormatField" ("invalid format string in '<format>'", "too many
// field flags specified in '<format>'"); a pushed width or precision above the bound
// raises the same "invalid format string" error for the pushing method; a push that does not fit the field raises
// CInvalidArgError for the pushing method ("CStringFormat::doInt" ...) with "argument
// does not match the field's format specification for '<format>'" or "expected integer
// value (field width|field precision) in '<format>'"; getResult() before every field is
// filled raises CInvalidObjectStateError with "CStringFormat: not all parameters have
// been pushed in yet". After an error the object must not be used again.
class CStringFormat : public CObject {
public:
    static constexpr int32_t MaxFieldSize = 4096;

    explicit CStringFormat(const String& format);
    // A literal format text, borrowed as String(const wchar_t*) borrows it: it must outlive
    // the formatter. Spares making a String for the common case.
    explicit CStringFormat(const wchar_t* format);

    CStringFormat& doInt(int64_t value, bool isSigned = true);
    CStringFormat& doDouble(double value);
    CStringFormat& doChar(char32_t character);
    CStringFormat& doString(const String& text);

    // The finished text; the same String on every call.
    String getResult();

private:
    enum class FieldKind : int32_t { None = 0, Integer = 1, FloatingPoint = 2, Character = 3, Text = 4 };

    void goToNextFormatField();
    void readFieldSpecification();
    int32_t readNumber(const wchar_t*& p) const;
    void pushInteger(int64_t value, bool isSigned, const char* method);
    void formatInteger(int64_t value, bool isSigned);
    void formatDouble(double value, const char* method);
    bool formatDoubleDirectly(double value);
    void formatCharacter(int value, const char* method);
    void formatText(const String& text, const char* method);
    template <class Write>
    void appendPadded(int32_t chars, Write write);
    void appendWideText(const wchar_t* text, size_t units);
    // Formats one value into the scratch buffer; returns the length of the output.
    template <class T>
    size_t formatWithRuntime(const char* fieldFormat, T value, const char* method);
    // Writes "%", the flags that apply, the width and precision, and `conversion`.
    void buildSpecification(char* out, bool allFlags, bool withPrecision, char conversion) const;
    void reserveScratch(size_t size);
    void checkNoPendingWidth(const char* method) const;
    [[noreturn]] void fail(const char* method, const wchar_t* message) const;

    P<IString> m_format;              // the format as wide text; null for a borrowed literal
    const wchar_t* m_text = nullptr;  // the format's wide characters
    size_t m_length = 0;
    size_t m_position = 0;
    CWideTextBuffer m_result;
    std::optional<String> m_finished;  // the result, once taken

    FieldKind m_kind = FieldKind::None;
    wchar_t m_conversion = 0;
    bool m_zeroPad = false;
    bool m_leftJustify = false;
    bool m_alternate = false;
    bool m_plusSign = false;
    bool m_spaceSign = false;
    bool m_widthPending = false;
    bool m_precisionPending = false;
    int32_t m_width = 0;
    int32_t m_precision = -1;
    int32_t m_flagCount = 0;

    std::string m_textBytes;  // a string argument as UTF-8
    // The scratch buffer, reused for every field; it starts in the object and, when a field
    // needs more, is replaced by a heap buffer of exactly the size needed. It never shrinks.
    char m_inlineScratch[64];
    std::unique_ptr<char[]> m_heapScratch;
    char* m_scratch = m_inlineScratch;
    size_t m_scratchSize = sizeof m_inlineScratch;
};

} // namespace zuno
