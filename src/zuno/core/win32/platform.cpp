#include "core/platform.h"

#include "core/win32/windows.h"

namespace zuno::platform {

void breakIntoDebugger() {
    if (IsDebuggerPresent()) DebugBreak();
}

void sleepMilliseconds(unsigned milliseconds) {
    Sleep(milliseconds);
}

} // namespace zuno::platform
