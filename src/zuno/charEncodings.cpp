#include "charEncodings.h"
#include "utf8Decode.h"

#include <zuno/CGlobalObjFactory.h>

#include <cstring>

namespace zuno {

namespace {
constexpr char32_t Replacement = 0xFFFD;

bool isSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

template <class Unit>
void appendUnit(std::string& out, Unit unit) {
    out.append(reinterpret_cast<const char*>(&unit), sizeof unit);
}

template <class Codec>
P<ICharEncoding> createCodec() {
    return make<Codec>();
}

template <class Codec>
const ICharEncoding& pinnedCodec() {
    static const CGlobalObjFactory::ServiceKey key;
    static const ICharEncoding* codec = CGlobalObjFactory::pinned<ICharEncoding>(key, &createCodec<Codec>);
    return *codec;
}
} // namespace

const ICharEncoding& getCharEncoding(Encoding encoding) {
    switch (encoding) {
    case Encoding::Wide:
        if constexpr (sizeof(wchar_t) == 2) return pinnedCodec<CUTF16CharEncoding>();
        else return pinnedCodec<CUTF32CharEncoding>();
    case Encoding::CodePage: return pinnedCodec<CCPCharEncoding>();
    case Encoding::UTF8: return pinnedCodec<CUTF8CharEncoding>();
    case Encoding::UTF16: return pinnedCodec<CUTF16CharEncoding>();
    case Encoding::UTF32: return pinnedCodec<CUTF32CharEncoding>();
    case Encoding::Latin1: break;
    }
    return pinnedCodec<CLatin1CharEncoding>();
}

int32_t CCharEncodingBase::measure(const void* data) const {
    const char* bytes = static_cast<const char*>(data);
    if (m_unitSize == 1) return int32_t(std::strlen(bytes));
    static const char zero[4] = {};
    int32_t length = 0;
    while (std::memcmp(bytes + length, zero, size_t(m_unitSize)) != 0) length += m_unitSize;
    return length;
}

int32_t CCharEncodingBase::countChars(const void* data, int32_t byteLength) const {
    std::u32string chars;
    decode(data, byteLength, chars);
    return int32_t(chars.size());
}

// UTF-8 ----------------------------------------------------------------------------------

// Calls `sink` with each character of the UTF-8 bytes.
template <class Sink>
void walkUTF8(const unsigned char* p, const unsigned char* end, Sink sink) {
    while (p < end) sink(decodeUTF8(p, end));
}

int32_t CUTF8CharEncoding::countChars(const void* data, int32_t byteLength) const {
    const auto* p = static_cast<const unsigned char*>(data);
    int32_t count = 0;
    walkUTF8(p, p + byteLength, [&](char32_t) { ++count; });
    return count;
}

void CUTF8CharEncoding::decode(const void* data, int32_t byteLength, std::u32string& out) const {
    const auto* p = static_cast<const unsigned char*>(data);
    out.reserve(out.size() + size_t(byteLength));
    walkUTF8(p, p + byteLength, [&](char32_t c) { out.push_back(c); });
}

void CUTF8CharEncoding::encode(const char32_t* chars, size_t count, std::string& out) const {
    out.reserve(out.size() + count);
    for (size_t i = 0; i < count; ++i) {
        char32_t c = chars[i];
        if (isSurrogate(c) || c > 0x10FFFF) c = Replacement;
        if (c < 0x80) {
            out.push_back(char(c));
        } else if (c < 0x800) {
            out.push_back(char(0xC0 | (c >> 6)));
            out.push_back(char(0x80 | (c & 0x3F)));
        } else if (c < 0x10000) {
            out.push_back(char(0xE0 | (c >> 12)));
            out.push_back(char(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(char(0x80 | (c & 0x3F)));
        } else {
            out.push_back(char(0xF0 | (c >> 18)));
            out.push_back(char(0x80 | ((c >> 12) & 0x3F)));
            out.push_back(char(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(char(0x80 | (c & 0x3F)));
        }
    }
}

// UTF-16 ---------------------------------------------------------------------------------

// Calls `sink` with each character of the UTF-16 units.
template <class Sink>
void walkUTF16(const char* bytes, size_t count, Sink sink) {
    auto unitAt = [&](size_t i) {
        char16_t unit;
        std::memcpy(&unit, bytes + 2 * i, 2);
        return unit;
    };
    for (size_t i = 0; i < count; ++i) {
        const char16_t unit = unitAt(i);
        if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < count) {
            const char16_t next = unitAt(i + 1);
            if (next >= 0xDC00 && next <= 0xDFFF) {
                sink(0x10000 + ((char32_t(unit) - 0xD800) << 10) + (next - 0xDC00));
                ++i;
                continue;
            }
        }
        sink(isSurrogate(unit) ? Replacement : char32_t(unit));
    }
}

int32_t CUTF16CharEncoding::countChars(const void* data, int32_t byteLength) const {
    int32_t count = 0;
    walkUTF16(static_cast<const char*>(data), size_t(byteLength) / 2, [&](char32_t) { ++count; });
    return count;
}

void CUTF16CharEncoding::decode(const void* data, int32_t byteLength, std::u32string& out) const {
    out.reserve(out.size() + size_t(byteLength) / 2);
    walkUTF16(static_cast<const char*>(data), size_t(byteLength) / 2, [&](char32_t c) { out.push_back(c); });
}

void CUTF16CharEncoding::encode(const char32_t* chars, size_t count, std::string& out) const {
    out.reserve(out.size() + 2 * count);
    for (size_t i = 0; i < count; ++i) {
        char32_t c = chars[i];
        if (isSurrogate(c) || c > 0x10FFFF) c = Replacement;
        if (c < 0x10000) {
            appendUnit(out, char16_t(c));
        } else {
            c -= 0x10000;
            appendUnit(out, char16_t(0xD800 + (c >> 10)));
            appendUnit(out, char16_t(0xDC00 + (c & 0x3FF)));
        }
    }
}

// UTF-32 ---------------------------------------------------------------------------------

void CUTF32CharEncoding::decode(const void* data, int32_t byteLength, std::u32string& out) const {
    const size_t count = size_t(byteLength) / 4;
    const size_t start = out.size();
    out.resize(start + count);
    std::memcpy(&out[start], data, count * 4);
    for (size_t i = start; i < out.size(); ++i)
        if (isSurrogate(out[i]) || out[i] > 0x10FFFF) out[i] = Replacement;
}

void CUTF32CharEncoding::encode(const char32_t* chars, size_t count, std::string& out) const {
    const size_t start = out.size();
    out.resize(start + 4 * count);
    char* target = &out[start];
    std::memcpy(target, chars, 4 * count);
    for (size_t i = 0; i < count; ++i) {
        if (isSurrogate(chars[i]) || chars[i] > 0x10FFFF) std::memcpy(target + 4 * i, &Replacement, 4);
    }
}

// Latin-1 --------------------------------------------------------------------------------

void CLatin1CharEncoding::decode(const void* data, int32_t byteLength, std::u32string& out) const {
    const auto* p = static_cast<const unsigned char*>(data);
    out.append(p, p + byteLength);
}

void CLatin1CharEncoding::encode(const char32_t* chars, size_t count, std::string& out) const {
    out.reserve(out.size() + count);
    for (size_t i = 0; i < count; ++i) out.push_back(chars[i] <= 0xFF ? char(chars[i]) : '?');
}

} // namespace zuno
