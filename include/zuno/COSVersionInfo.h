#pragma once

#include <zuno/String.h>

#include <cstdint>

namespace zuno {

// The operating system's version record: the extended version structure that RtlGetVersion
// fills, plus the few other facts the name depends on (processor architecture, the
// edition GetProductInfo reports, the SM_SERVERR2 metric). It is plain data, so naming is
// pure code over whatever record it is given; on Windows readOSVersionInfo()
// (win32/readOSVersionInfo.h) fills one from the running system.
class COSVersionInfo {
public:
    static constexpr uint32_t PlatformNT = 2;
    static constexpr uint8_t ProductTypeWorkstation = 1;
    static constexpr uint16_t ArchitectureX86 = 0;
    static constexpr uint16_t ArchitectureItanium = 6;
    static constexpr uint16_t ArchitectureX64 = 9;

    // Suite-mask bits that the name looks at.
    static constexpr uint16_t SuiteEnterprise = 0x0002;
    static constexpr uint16_t SuiteDatacenter = 0x0080;
    static constexpr uint16_t SuitePersonal = 0x0200;
    static constexpr uint16_t SuiteBlade = 0x0400;
    static constexpr uint16_t SuiteStorageServer = 0x2000;
    static constexpr uint16_t SuiteComputeServer = 0x4000;
    static constexpr uint16_t SuiteHomeServer = 0x8000;

    uint32_t majorVersion = 0;
    uint32_t minorVersion = 0;
    uint32_t buildNumber = 0;
    uint32_t platformId = 0;
    String servicePack = String::empty();  // "Service Pack 2"; at most 128 characters
    uint16_t servicePackMajor = 0;
    uint16_t servicePackMinor = 0;
    uint16_t suiteMask = 0;
    uint8_t productType = 0;               // 1: workstation; otherwise a server
    uint16_t processorArchitecture = 0;    // 0 x86, 6 Itanium, 9 x64
    uint32_t edition = 0;                  // GetProductInfo's product type for this version
    int32_t serverR2 = 0;                  // GetSystemMetrics(SM_SERVERR2)

    // The human-readable name, for instance "Microsoft Windows 10 Professional
    // (build 19041), 64-bit, 2004 20H1 - May 2020 Update". Raises CError "Unsupported OS"
    // for a system older than Windows 2000 that is not NT-based.
    String getOSName() const;

    bool isWorkstation() const { return productType == ProductTypeWorkstation; }
    bool hasSuite(uint16_t suite) const { return (suiteMask & suite) != 0; }
};

} // namespace zuno
