#include "text/CCPCharEncoding.h"

#include "core/win32/windows.h"

#include <climits>
#include <cstdlib>

// The ANSI code page, decoded byte by byte (double-byte code pages are deliberately not
// combined) and encoded with the runtime's wctomb in the current locale.
namespace zuno {

CCPCharEncoding::CCPCharEncoding() : CCharEncodingBase(1) {
    for (int byte = 0; byte < 256; ++byte) {
        const char in = char(byte);
        wchar_t c = 0;
        // A byte the code page cannot convert (a lead byte on its own) becomes character 0.
        if (MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, &in, 1, &c, 1) != 1) c = 0;
        m_byteTable[byte] = char32_t(c);
    }
}

void CCPCharEncoding::decode(const void* data, int32_t byteLength, std::u32string& out) const {
    const auto* p = static_cast<const unsigned char*>(data);
    out.reserve(out.size() + size_t(byteLength));
    for (int32_t i = 0; i < byteLength; ++i) out.push_back(m_byteTable[p[i]]);
}

void CCPCharEncoding::encode(const char32_t* chars, size_t count, std::string& out) const {
    char buffer[MB_LEN_MAX];
    out.reserve(out.size() + count);
    for (size_t i = 0; i < count; ++i) {
        if (chars[i] > 0xFFFF) continue;  // wchar_t cannot hold it
        const int written = std::wctomb(buffer, wchar_t(chars[i]));
        if (written > 0) out.append(buffer, size_t(written));
    }
}

} // namespace zuno
