#include <zuno/systemError.h>
#include "core/win32/windows.h"

#include <string>

namespace zuno {

String getSystemErrorText(uint32_t code) {
    wchar_t* text = nullptr;
    const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    DWORD length = FormatMessageW(flags, nullptr, code, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    if (length == 0 || !text) {
        if (text) LocalFree(text);
        return String(("Unknown error " + std::to_string(code)).c_str(), -1);
    }
    while (length > 0 && (text[length - 1] == L'\r' || text[length - 1] == L'\n')) --length;
    const String result(text, int32_t(length));
    LocalFree(text);
    return result;
}

uint32_t getLastSystemError() {
    return GetLastError();
}

} // namespace zuno
