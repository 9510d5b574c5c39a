#include "system/win32/readOSVersionInfo.h"
#include "core/win32/windows.h"

namespace zuno {

namespace {

// A function looked up by name; null when the library or the function is missing.
template <class Function>
Function procAddress(HMODULE library, const char* name) {
    if (!library) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

HMODULE kernel32() {
    return GetModuleHandleW(L"kernel32.dll");
}

using RtlGetVersionFunction = LONG(WINAPI*)(OSVERSIONINFOEXW*);
using GetNativeSystemInfoFunction = void(WINAPI*)(SYSTEM_INFO*);
using GetProductInfoFunction = BOOL(WINAPI*)(DWORD, DWORD, DWORD, DWORD, DWORD*);

void readVersion(COSVersionInfo& info) {
    const HMODULE ntdll = LoadLibraryW(L"ntdll.dll");
    if (!ntdll) return;
    const auto rtlGetVersion = procAddress<RtlGetVersionFunction>(ntdll, "RtlGetVersion");
    OSVERSIONINFOEXW version{};
    version.dwOSVersionInfoSize = sizeof(version);
    if (rtlGetVersion && rtlGetVersion(&version) == 0) {
        info.majorVersion = version.dwMajorVersion;
        info.minorVersion = version.dwMinorVersion;
        info.buildNumber = version.dwBuildNumber;
        info.platformId = version.dwPlatformId;
        info.servicePack = String(version.szCSDVersion, -1);
        info.servicePackMajor = version.wServicePackMajor;
        info.servicePackMinor = version.wServicePackMinor;
        info.suiteMask = version.wSuiteMask;
        info.productType = version.wProductType;
    }
    FreeLibrary(ntdll);
}

uint16_t readProcessorArchitecture() {
    SYSTEM_INFO system{};
    if (const auto getNativeSystemInfo = procAddress<GetNativeSystemInfoFunction>(kernel32(), "GetNativeSystemInfo"))
        getNativeSystemInfo(&system);
    else
        GetSystemInfo(&system);
    return system.wProcessorArchitecture;
}

uint32_t readEdition(uint32_t major, uint32_t minor) {
    const auto getProductInfo = procAddress<GetProductInfoFunction>(kernel32(), "GetProductInfo");
    DWORD edition = 0;
    if (!getProductInfo || !getProductInfo(major, minor, 0, 0, &edition)) return 0;
    return edition;
}

} // namespace

COSVersionInfo readOSVersionInfo() {
    COSVersionInfo info;
    readVersion(info);
    info.processorArchitecture = readProcessorArchitecture();
    info.edition = readEdition(info.majorVersion, info.minorVersion);
    info.serverR2 = GetSystemMetrics(SM_SERVERR2);
    return info;
}

} // namespace zuno
