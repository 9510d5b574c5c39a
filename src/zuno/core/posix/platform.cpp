#include "core/platform.h"

#include <ctime>

namespace zuno::platform {

void breakIntoDebugger() {}

void sleepMilliseconds(unsigned milliseconds) {
    timespec pause{time_t(milliseconds / 1000), long(milliseconds % 1000) * 1000000L};
    nanosleep(&pause, nullptr);
}

} // namespace zuno::platform
