#include <zuno/CGlobalObjFactory.h>
#include <zuno/CObjectError.h>
#include <zuno/CString.h>
#include <zuno/String.h>

#include "text/CCompactWideString.h"
#include "text/unicode.h"
#include "text/utf8Decode.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <ostream>

namespace zuno {

namespace {

template <class S>
P<IString> createNullString() {
    return make<TNullString<S>>();
}

template <class S>
P<IString> pinnedNullString() {
    static const CGlobalObjFactory::ServiceKey key;
    static IString* const text = CGlobalObjFactory::pinned<IString>(key, &createNullString<S>);
    return P<IString>::share(text);
}

} // namespace

String String::null(Encoding encoding) {
    switch (encoding) {
    case Encoding::Wide: return String(pinnedNullString<CWCharString>());
    case Encoding::CodePage: return String(pinnedNullString<CCPString>());
    case Encoding::UTF8: return String(pinnedNullString<CUTF8String>());
    case Encoding::UTF16: return String(pinnedNullString<CUTF16String>());
    case Encoding::UTF32: return String(pinnedNullString<CUTF32String>());
    case Encoding::Latin1: break;
    }
    return String(pinnedNullString<CLatin1String>());
}

String String::empty() {
    return String(L"");
}

String::String() : m_text(pinnedNullString<CWCharString>()) {}

String::String(const char* text) {
    if (text) m_text = make<CCPString>(text, -1, CString::Borrow);
    else *this = null(Encoding::CodePage);
}

String::String(const char* text, int32_t length) {
    if (text) m_text = make<CCPString>(text, length, CString::Copy);
    else *this = null(Encoding::CodePage);
}

String::String(const wchar_t* text) {
    if (text) m_text = make<CWCharString>(text, -1, CString::Borrow);
    else *this = String();
}

String::String(const wchar_t* text, int32_t count) {
    if (text) m_text = make<CWCharString>(text, count < 0 ? -1 : count * int32_t(sizeof(wchar_t)), CString::Copy);
    else *this = String();
}

String::String(P<IString> text) : m_text(std::move(text)) {
    if (!m_text) *this = String();
}

String String::fromUTF8(const char* text, int32_t length) {
    if (!text) return null(Encoding::UTF8);
    return String(make<CUTF8String>(text, length, CString::Copy));
}

String String::fromUTF8(const std::string& text) {
    return fromUTF8(text.data(), int32_t(text.size()));
}

// One pass into one buffer: a short text is decoded on the stack and copied into a text
// object that holds it in its own allocation; a long one is decoded into a heap buffer of
// one unit per byte, which is trimmed when much of it stayed unused and then adopted.
String String::fromUTF8ToWide(const char* text, int32_t length) {
    if (!text) return String();
    const size_t bytes = length < 0 ? std::strlen(text) : size_t(length);
    const auto* begin = reinterpret_cast<const unsigned char*>(text);
    size_t chars = 0;
    constexpr size_t ShortText = 256;
    if (bytes <= ShortText) {
        wchar_t units[ShortText];
        const size_t count = size_t(decodeUTF8ToWide(begin, begin + bytes, units, chars) - units);
        return String(CCompactWideString::create(units, count, int32_t(chars)));
    }
    auto* buffer = static_cast<wchar_t*>(std::malloc((bytes + 1) * sizeof(wchar_t)));
    if (!buffer) throw std::bad_alloc();
    const size_t count = size_t(decodeUTF8ToWide(begin, begin + bytes, buffer, chars) - buffer);
    buffer[count] = 0;
    if (count < bytes - bytes / 4) {
        if (void* trimmed = std::realloc(buffer, (count + 1) * sizeof(wchar_t))) buffer = static_cast<wchar_t*>(trimmed);
    }
    try {
        return String(make<CWCharString>(buffer, int32_t(count * sizeof(wchar_t)), CString::Adopt, true, int32_t(chars)));
    } catch (...) {
        std::free(buffer);
        throw;
    }
}

String String::fromChars(const std::u32string& chars, Encoding encoding) {
    std::string bytes;
    getCharEncoding(encoding).encode(chars.data(), chars.size(), bytes);
    // Every encoding but the code page writes one character for each it is given.
    const int32_t count = encoding == Encoding::CodePage ? -1 : int32_t(chars.size());
    return String(createString(encoding, bytes.data(), int32_t(bytes.size()), count));
}

const char* String::c_str() const {
    const Encoding encoding = getEncoding();
    if (encoding != Encoding::CodePage && encoding != Encoding::UTF8 && encoding != Encoding::Latin1)
        throw CInvalidObjectStateError(m_text.get(), nullptr, L"the text is not held in an 8-bit encoding");
    return static_cast<const char*>(m_text->getData());
}

const wchar_t* String::wc_str() const {
    if (getEncoding() != Encoding::Wide)
        throw CInvalidObjectStateError(m_text.get(), nullptr, L"the text is not held in wide characters");
    return static_cast<const wchar_t*>(m_text->getData());
}

std::string String::toStdString() const {
    if (getEncoding() == Encoding::Wide) {  // the common case: straight from the wide text
        std::string bytes;
        unicode::wideToUTF8(static_cast<const wchar_t*>(m_text->getData()),
                            size_t(m_text->getByteLength()) / sizeof(wchar_t), bytes);
        return bytes;
    }
    const String utf8 = toUTF8();
    return std::string(utf8.c_str(), size_t(utf8->getByteLength()));
}

std::wstring String::toStdWString() const {
    const String wide = toWide();
    return std::wstring(wide.wc_str(), size_t(wide->getByteLength()) / sizeof(wchar_t));
}

std::ostream& operator<<(std::ostream& out, const String& text) {
    return out << (text.isNull() ? std::string("<null>") : '"' + text.toStdString() + '"');
}

} // namespace zuno
