#pragma once

#include <zuno/COSVersionInfo.h>

namespace zuno {

// The running system's version record. RtlGetVersion is looked up by name in ntdll.dll, so
// the answer is not bent by the program's compatibility manifest. Where it is missing or
// fails (no NT system from Windows 2000 on lacks it) the version fields stay zero, which
// naming refuses as "Unsupported OS" rather than guessing.
COSVersionInfo readOSVersionInfo();

} // namespace zuno
