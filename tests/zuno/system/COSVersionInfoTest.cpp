#include <zuno/COSVersionInfo.h>
#include <zuno/CError.h>

#include <gtest/gtest.h>

#include <string>

using namespace zuno;

namespace {

constexpr uint8_t WS = 1, Server = 3;
constexpr uint16_t X86 = 0, Itanium = 6, X64 = 9, Arm64 = 12;
constexpr uint16_t Enterprise = 0x02, Datacenter = 0x80, Personal = 0x200, Blade = 0x400, Storage = 0x2000,
                   Cluster = 0x4000, Home = 0x8000;

// The name of an NT system's version record.
std::string os(uint32_t major, uint32_t minor, uint32_t build, uint8_t productType, uint16_t architecture = X86,
                   uint16_t suite = 0, uint32_t edition = 0, const wchar_t* servicePack = L"", int32_t serverR2 = 0) {
    COSVersionInfo info;
    info.platformId = COSVersionInfo::PlatformNT;
    info.majorVersion = major;
    info.minorVersion = minor;
    info.buildNumber = build;
    info.productType = productType;
    info.processorArchitecture = architecture;
    info.suiteMask = suite;
    info.edition = edition;
    info.servicePack = servicePack;
    info.serverR2 = serverR2;
    return info.getOSName().toStdString();
}

} // namespace

TEST(COSVersionInfo, namesEachBranchOfTheDecisionTree) {
    const std::pair<std::string, const char*> cases[] = {
        // Windows 10 and 11 by build and product type, then edition, bitness and release.
        {os(10, 0, 22000, WS, X64, 0, 48),
         "Microsoft Windows 11 Professional (build 22000), 64-bit, 21H2 - Windows 11 Insider Preview"},
        {os(10, 0, 21999, Server, X64, 0, 7), "Microsoft Windows 10 Server Standard Edition (build 21999), 64-bit"},
        {os(10, 0, 25398, Server, X64, 0, 8), "Microsoft Windows 11 Server Datacenter Edition (build 25398), 64-bit"},
        // An edition outside the table adds nothing, and 19044 has no release name.
        {os(10, 0, 19044, WS, X86, 0, 101, L"SP1"), "Microsoft Windows 10  SP1 (build 19044), 32-bit"},
        {os(10, 0, 19041, WS, Arm64, 0, 48), "Microsoft Windows 10 Professional (build 19041), 2004 20H1 - May 2020 Update"},
        // Version 6 by minor version and product type; no bitness for Itanium or ARM.
        {os(6, 0, 6002, WS, X86, 0, 1), "Microsoft Windows Vista Ultimate Edition (build 6002), 32-bit"},
        {os(6, 0, 6001, Server, Itanium, 0, 7), "Microsoft Windows Server 2008 Standard Edition (build 6001)"},
        {os(6, 1, 7601, WS, X64, 0, 3), "Microsoft Windows 7 Home Premium Edition (build 7601), 64-bit"},
        {os(6, 1, 7600, Server, X64, 0, 10), "Microsoft Windows Server 2008 R2 Enterprise Edition (build 7600), 64-bit"},
        // The Windows 10 previews reported 6.4; release names belong to major 10 only.
        {os(6, 4, 10240, WS, X64, 0, 48), "Microsoft Windows 10 Professional (build 10240), 64-bit"},
        {os(6, 5, 1, WS, X64, 0, 48), "Microsoft Professional (build 1), 64-bit"},
        // 5.2: R2 first, then Storage Server, XP x64, Home Server, Server 2003; no bitness before 6.
        {os(5, 2, 3790, Server, X86, Storage, 0, L"", 1), "Microsoft Windows Server 2003 R2, Standard Edition (build 3790)"},
        {os(5, 2, 3790, Server, X86, Storage | Home), "Microsoft Windows Storage Server 2003Standard Edition (build 3790)"},
        {os(5, 2, 3790, WS, X64), "Microsoft Windows XP Professional x64 Edition (build 3790)"},
        {os(5, 2, 3790, WS, X64, Home), "Microsoft Windows Home Server (build 3790)"},
        {os(5, 2, 3790, WS, X86), "Microsoft Windows Server 2003,  (build 3790)"},
        {os(5, 1, 2600, WS, X86, Personal), "Microsoft Windows XP Home Edition (build 2600)"},
        {os(5, 1, 2600, WS), "Microsoft Windows XP Professional (build 2600)"},
        {os(5, 0, 2195, WS, X86, Datacenter), "Microsoft Windows 2000 Professional (build 2195)"},
        {os(5, 0, 2195, Server, X86, Datacenter | Enterprise), "Microsoft Windows 2000 Datacenter Server (build 2195)"},
        {os(5, 0, 2195, Server, X86, Enterprise), "Microsoft Windows 2000 Advanced Server (build 2195)"},
        {os(5, 0, 2195, Server), "Microsoft Windows 2000 Server (build 2195)"},
        {os(5, 3, 1, WS), "Microsoft  (build 1)"},
        // NT 4 is named by the minor-version rule of the 9x family.
        {os(4, 0, 1381, WS, X86, 0, 0, L"Service Pack 6"), "Microsoft Windows 95 Service Pack 6 (build 1381)"},
        {os(4, 1, 1, WS), "Microsoft  (build 1)"},
        // Unknown majors get no product name; from 6 on they still get the bitness.
        {os(3, 51, 1057, WS), "Microsoft  (build 1057)"},
        {os(11, 0, 22000, WS, X64, 0, 48), "Microsoft  (build 22000), 64-bit"},
    };
    for (const auto& [name, expected] : cases) EXPECT_EQ(name, expected);
}

TEST(COSVersionInfo, namesServer2003EditionsByArchitectureAndSuiteTheFirstMatchWinning) {
    const std::tuple<uint16_t, uint16_t, std::string> cases[] = {
        {Itanium, Datacenter | Enterprise, "Datacenter Edition for Itanium-based Systems"},
        {Itanium, Enterprise, "Enterprise Edition for Itanium-based Systems"},
        {Itanium, Blade, ""},
        {X64, Datacenter | Enterprise, "Datacenter x64 Edition"},
        {X64, Enterprise, "Enterprise x64 Edition"},
        {X64, Blade, "Standard x64 Edition"},
        {X86, Cluster | Datacenter, "Compute Cluster Edition"},
        {X86, Datacenter | Enterprise, "Datacenter Edition"},
        {X86, Enterprise | Blade, "Enterprise Edition"},
        {X86, Blade, "Web Edition"},
        {Arm64, 0, "Standard Edition"},
    };
    for (const auto& [architecture, suite, edition] : cases)
        EXPECT_EQ(os(5, 2, 3790, Server, architecture, suite),
                  "Microsoft Windows Server 2003, " + edition + " (build 3790)");
}

TEST(COSVersionInfo, refusesSystemsBeforeNtBasedWindows2000) {
    COSVersionInfo info;
    info.majorVersion = 4;
    for (const uint32_t platform : {0u, 1u}) {
        info.platformId = platform;
        try {
            ADD_FAILURE() << info.getOSName();
        } catch (const CError& error) {
            EXPECT_EQ(error.getMessage(), String(L"Unsupported OS"));
        }
    }
    info.majorVersion = 5;
    info.minorVersion = 1;
    EXPECT_EQ(info.getOSName(), String(L"Microsoft Windows XP Professional (build 0)"));
}
