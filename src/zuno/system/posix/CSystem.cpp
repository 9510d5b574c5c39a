#include <zuno/CSystem.h>

#include <sys/utsname.h>

namespace zuno {

// The kernel's name, release and machine as uname reports them, for instance
// "Linux 6.1.0-18-amd64 (x86_64)"; "Unknown" when uname fails.
String CSystem::getOSName() {
    utsname names;
    if (uname(&names) != 0) return String(L"Unknown");
    const std::string name = std::string(names.sysname) + " " + names.release + " (" + names.machine + ")";
    return String::fromUTF8ToWide(name);
}

} // namespace zuno
