#include "text/percentEncoding.h"

#include <cstring>

namespace zuno {

namespace {

bool isUnreserved(unsigned char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
           c == '_' || c == '~';
}

} // namespace

std::string percentEncode(const std::string& text, const char* keep) {
    std::string encoded;
    encoded.reserve(text.size());
    for (const unsigned char c : text) {
        if (isUnreserved(c) || (c != 0 && std::strchr(keep, c))) {
            encoded += char(c);
        } else {
            encoded += '%';
            encoded += unicode::upperHexDigit(c >> 4);
            encoded += unicode::upperHexDigit(c);
        }
    }
    return encoded;
}

std::string percentDecode(const std::string& text) {
    std::string decoded;
    decoded.reserve(text.size());
    const auto* p = reinterpret_cast<const unsigned char*>(text.data());
    const auto* end = p + text.size();
    while (p != end) {
        const int byte = percentEscapeAt(p, end);
        if (byte >= 0) {
            decoded += char(byte);
            p += 3;
        } else {
            decoded += char(*p++);
        }
    }
    return decoded;
}

} // namespace zuno
