#include <zuno/systemError.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace zuno {

namespace {

// strerror_r comes in two flavours: the XSI one fills the buffer and answers 0, the GNU
// one answers a pointer to the text (not always the buffer). Overloading picks the one
// the C library declares.
[[maybe_unused]] const char* errorText(int result, const char* buffer) {
    return result == 0 ? buffer : nullptr;
}

[[maybe_unused]] const char* errorText(const char* result, const char*) {
    return result;
}

} // namespace

String getSystemErrorText(uint32_t code) {
    char buffer[256] = {};
    const char* text = errorText(strerror_r(int(code), buffer, sizeof buffer), buffer);
    if (!text || !*text) return String(("Unknown error " + std::to_string(code)).c_str(), -1);
    // The text is in the locale's encoding, which is the code page here.
    return String(text, -1);
}

uint32_t getLastSystemError() {
    return uint32_t(errno);
}

} // namespace zuno
