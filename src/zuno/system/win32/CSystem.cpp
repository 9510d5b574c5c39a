#include <zuno/CSystem.h>
#include "system/win32/readOSVersionInfo.h"

namespace zuno {

// The version record is read once per process; the system does not change under it.
String CSystem::getOSName() {
    static const COSVersionInfo info = readOSVersionInfo();
    return info.getOSName();
}

} // namespace zuno
