#include "text/percentEncoding.h"

#include <cstring>

namespace zuno {

namespace {

bool isUnreserved(unsigned char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
           c == '_' || c == '~';
}

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

} // namespace

std::string percentEncode(const std::string& text, const char* keep) {
    static const char hexDigits[] = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(text.size());
    for (const unsigned char c : text) {
        if (isUnreserved(c) || (c != 0 && std::strchr(keep, c))) {
            encoded += char(c);
        } else {
            encoded += '%';
            encoded += hexDigits[c >> 4];
            encoded += hexDigits[c & 0x0F];
        }
    }
    return encoded;
}

std::string percentDecode(const std::string& text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? hexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[i + 2]) : -1;
        if (low >= 0) {
            decoded += char(high * 16 + low);
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

} // namespace zuno
