#include "text/CCPCharEncoding.h"
#include "text/unicode.h"

#include <climits>
#include <cwchar>

// The code page on POSIX is the locale's multibyte encoding (normally UTF-8), decoded
// sequence by sequence with mbrtowc and encoded with wcrtomb.
namespace zuno {

CCPCharEncoding::CCPCharEncoding() : CCharEncodingBase(1) {}

void CCPCharEncoding::decode(const void* data, int32_t byteLength, std::u32string& out) const {
    const char* p = static_cast<const char*>(data);
    const char* end = p + byteLength;
    std::mbstate_t state{};
    out.reserve(out.size() + size_t(byteLength));
    while (p < end) {
        if (static_cast<unsigned char>(*p) < 0x80) {  // ASCII is itself in every locale we support
            out.push_back(char32_t(*p++));
            continue;
        }
        wchar_t c;
        const size_t used = std::mbrtowc(&c, p, size_t(end - p), &state);
        if (used == size_t(-1) || used == size_t(-2) || used == 0) {
            out.push_back(unicode::Replacement);
            state = std::mbstate_t{};
            ++p;
        } else {
            out.push_back(char32_t(c));
            p += used;
        }
    }
}

void CCPCharEncoding::encode(const char32_t* chars, size_t count, std::string& out) const {
    char buffer[MB_LEN_MAX];
    std::mbstate_t state{};
    out.reserve(out.size() + count);
    for (size_t i = 0; i < count; ++i) {
        if (chars[i] < 0x80) {
            out.push_back(char(chars[i]));
            continue;
        }
        // A character the locale cannot encode writes nothing.
        const size_t written = std::wcrtomb(buffer, wchar_t(chars[i]), &state);
        if (written == size_t(-1)) state = std::mbstate_t{};
        else out.append(buffer, written);
    }
}

} // namespace zuno
