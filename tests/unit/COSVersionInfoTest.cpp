#include <zuno/COSVersionInfo.h>
#include <zuno/CError.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace zuno;

namespace {

constexpr uint8_t Workstation = 1;
constexpr uint8_t Server = 3;
constexpr uint16_t X86 = 0;
constexpr uint16_t Itanium = 6;
constexpr uint16_t X64 = 9;
constexpr uint16_t Arm64 = 12;

// One version record and the name it must get.
struct Case {
    uint32_t major;
    uint32_t minor;
    uint32_t build;
    uint8_t productType;
    uint16_t architecture;
    uint16_t suiteMask;
    uint32_t edition;
    int32_t serverR2;
    const wchar_t* servicePack;
    std::string expected;

    COSVersionInfo record() const {
        COSVersionInfo info;
        info.platformId = COSVersionInfo::PlatformNT;
        info.majorVersion = major;
        info.minorVersion = minor;
        info.buildNumber = build;
        info.productType = productType;
        info.processorArchitecture = architecture;
        info.suiteMask = suiteMask;
        info.edition = edition;
        info.serverR2 = serverR2;
        info.servicePack = servicePack;
        return info;
    }
};

void expectNames(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expected);
        EXPECT_EQ(c.record().getOSName().toStdString(), c.expected);
    }
}

} // namespace

TEST(COSVersionInfo, namesWindows10And11ByBuildAndProductType) {
    expectNames({
        {10, 0, 22000, Workstation, X64, 0, 48, 0, L"",
         "Microsoft Windows 11 Professional (build 22000), 64-bit, 21H2 - Windows 11 Insider Preview"},
        {10, 0, 21999, Workstation, X64, 0, 48, 0, L"", "Microsoft Windows 10 Professional (build 21999), 64-bit"},
        {10, 0, 19044, Workstation, X64, 0, 48, 0, L"", "Microsoft Windows 10 Professional (build 19044), 64-bit"},
        {10, 0, 17763, Server, X64, 0, 7, 0, L"",
         "Microsoft Windows 10 Server Standard Edition (build 17763), 64-bit, 1809 Redstone 5 - October 2018 Update"},
        {10, 0, 25398, Server, X64, 0, 8, 0, L"", "Microsoft Windows 11 Server Datacenter Edition (build 25398), 64-bit"},
        {10, 0, 10240, Workstation, X86, 0, 4, 0, L"",
         "Microsoft Windows 10 Enterprise Edition (build 10240), 32-bit, 1507 Threshold 1 (07/2015)"},
        // No bitness for other architectures; an edition outside the table adds nothing.
        {10, 0, 19041, Workstation, Arm64, 0, 48, 0, L"",
         "Microsoft Windows 10 Professional (build 19041), 2004 20H1 - May 2020 Update"},
        {10, 0, 19045, Workstation, X64, 0, 101, 0, L"", "Microsoft Windows 10  (build 19045), 64-bit"},
        {10, 0, 19045, Workstation, X64, 0, 48, 0, L"Service Pack 1",
         "Microsoft Windows 10 Professional Service Pack 1 (build 19045), 64-bit"},
    });
}

TEST(COSVersionInfo, namesVersion6ByMinorVersionAndProductType) {
    expectNames({
        {6, 0, 6002, Workstation, X86, 0, 1, 0, L"Service Pack 2",
         "Microsoft Windows Vista Ultimate Edition Service Pack 2 (build 6002), 32-bit"},
        {6, 0, 6001, Server, X64, 0, 8, 0, L"", "Microsoft Windows Server 2008 Datacenter Edition (build 6001), 64-bit"},
        {6, 0, 6001, Server, Itanium, 0, 15, 0, L"",
         "Microsoft Windows Server 2008 Enterprise Edition for Itanium-based Systems (build 6001)"},
        {6, 1, 7601, Workstation, X64, 0, 3, 0, L"Service Pack 1",
         "Microsoft Windows 7 Home Premium Edition Service Pack 1 (build 7601), 64-bit"},
        {6, 1, 7600, Server, X64, 0, 10, 0, L"", "Microsoft Windows Server 2008 R2 Enterprise Edition (build 7600), 64-bit"},
        {6, 2, 9200, Workstation, X64, 0, 48, 0, L"", "Microsoft Windows 8 Professional (build 9200), 64-bit"},
        {6, 2, 9200, Server, X64, 0, 13, 0, L"",
         "Microsoft Windows Server 2012 Standard Edition (core installation) (build 9200), 64-bit"},
        {6, 3, 9600, Workstation, X86, 0, 101, 0, L"", "Microsoft Windows 8.1  (build 9600), 32-bit"},
        {6, 3, 9600, Server, X64, 0, 12, 0, L"",
         "Microsoft Windows Server 2012 R2 Datacenter Edition (core installation) (build 9600), 64-bit"},
        // The Windows 10 previews reported 6.4; release suffixes belong to major 10 only.
        {6, 4, 10240, Workstation, X64, 0, 48, 0, L"", "Microsoft Windows 10 Professional (build 10240), 64-bit"},
        {6, 4, 9841, Server, X64, 0, 7, 0, L"", "Microsoft Windows 10 Server Standard Edition (build 9841), 64-bit"},
        {6, 5, 1, Workstation, X64, 0, 48, 0, L"", "Microsoft Professional (build 1), 64-bit"},
    });
}

TEST(COSVersionInfo, looksEditionsAndReleasesUpByExactNumber) {
    std::vector<Case> cases;
    const std::pair<uint32_t, std::string> editions[] = {
        {4, "Enterprise Edition"}, {10, "Enterprise Edition"}, {48, "Professional"},
        {12, "Datacenter Edition (core installation)"}, {71, "Ultimate E Edition"},
        {0, ""}, {5, ""}, {16, ""}, {72, ""},
    };
    for (const auto& [edition, text] : editions)
        cases.push_back({6, 1, 7601, Workstation, X64, 0, edition, 0, L"", "Microsoft Windows 7 " + text + " (build 7601), 64-bit"});
    const std::pair<uint32_t, std::string> releases[] = {
        {10586, ", 1511 Threshold 2 - November Update (11/2015)"},
        {15063, ", 1703 Redstone 2 - Creators Update (4/2017)"},
        {17134, ", 1803 Redstone 4 - April 2018 Update"},
        {19043, ", 21H1 - May 2021 Update"},
        {10241, ""}, {19045, ""},
    };
    for (const auto& [build, suffix] : releases)
        cases.push_back({10, 0, build, Workstation, X64, 0, 48, 0, L"",
                         "Microsoft Windows 10 Professional (build " + std::to_string(build) + "), 64-bit" + suffix});
    expectNames(cases);
}

TEST(COSVersionInfo, namesServer2003AndItsRelatives) {
    constexpr uint16_t Enterprise = 0x02, Datacenter = 0x80, Web = 0x400, Storage = 0x2000, Cluster = 0x4000,
                       Home = 0x8000;
    expectNames({
        {5, 2, 3790, Server, X86, 0, 0, 1, L"Service Pack 2",
         "Microsoft Windows Server 2003 R2, Standard Edition Service Pack 2 (build 3790)"},
        {5, 2, 3790, Server, X86, Storage, 0, 1, L"", "Microsoft Windows Server 2003 R2, Standard Edition (build 3790)"},
        {5, 2, 3790, Server, X86, Storage, 0, 0, L"", "Microsoft Windows Storage Server 2003Standard Edition (build 3790)"},
        {5, 2, 3790, Workstation, X64, 0, 0, 0, L"Service Pack 2",
         "Microsoft Windows XP Professional x64 Edition Service Pack 2 (build 3790)"},
        {5, 2, 3790, Workstation, X64, Home, 0, 0, L"", "Microsoft Windows Home Server (build 3790)"},
        {5, 2, 3790, Server, X86, Home, 0, 0, L"", "Microsoft Windows Home ServerStandard Edition (build 3790)"},
        {5, 2, 3790, Workstation, X86, 0, 0, 0, L"", "Microsoft Windows Server 2003,  (build 3790)"},
        // Server editions by architecture and suite, the earlier test winning.
        {5, 2, 3790, Server, Itanium, Datacenter | Enterprise, 0, 0, L"",
         "Microsoft Windows Server 2003, Datacenter Edition for Itanium-based Systems (build 3790)"},
        {5, 2, 3790, Server, Itanium, Enterprise, 0, 0, L"",
         "Microsoft Windows Server 2003, Enterprise Edition for Itanium-based Systems (build 3790)"},
        {5, 2, 3790, Server, Itanium, Web, 0, 0, L"", "Microsoft Windows Server 2003,  (build 3790)"},
        {5, 2, 3790, Server, X64, Datacenter | Enterprise, 0, 0, L"",
         "Microsoft Windows Server 2003, Datacenter x64 Edition (build 3790)"},
        {5, 2, 3790, Server, X64, Enterprise, 0, 0, L"", "Microsoft Windows Server 2003, Enterprise x64 Edition (build 3790)"},
        {5, 2, 3790, Server, X64, Web, 0, 0, L"", "Microsoft Windows Server 2003, Standard x64 Edition (build 3790)"},
        {5, 2, 3790, Server, X86, Cluster | Datacenter, 0, 0, L"",
         "Microsoft Windows Server 2003, Compute Cluster Edition (build 3790)"},
        {5, 2, 3790, Server, X86, Datacenter | Enterprise, 0, 0, L"",
         "Microsoft Windows Server 2003, Datacenter Edition (build 3790)"},
        {5, 2, 3790, Server, X86, Enterprise | Web, 0, 0, L"", "Microsoft Windows Server 2003, Enterprise Edition (build 3790)"},
        {5, 2, 3790, Server, X86, Web, 0, 0, L"", "Microsoft Windows Server 2003, Web Edition (build 3790)"},
        {5, 2, 3790, Server, Arm64, 0, 0, 0, L"", "Microsoft Windows Server 2003, Standard Edition (build 3790)"},
    });
}

TEST(COSVersionInfo, namesXp2000AndNt4) {
    constexpr uint16_t Enterprise = 0x02, Datacenter = 0x80, Personal = 0x200;
    expectNames({
        {5, 1, 2600, Workstation, X86, Personal, 0, 0, L"Service Pack 3",
         "Microsoft Windows XP Home Edition Service Pack 3 (build 2600)"},
        {5, 1, 2600, Workstation, X86, 0, 0, 0, L"", "Microsoft Windows XP Professional (build 2600)"},
        {5, 0, 2195, Workstation, X86, Datacenter, 0, 0, L"", "Microsoft Windows 2000 Professional (build 2195)"},
        {5, 0, 2195, Server, X86, Datacenter | Enterprise, 0, 0, L"", "Microsoft Windows 2000 Datacenter Server (build 2195)"},
        {5, 0, 2195, Server, X86, Enterprise, 0, 0, L"", "Microsoft Windows 2000 Advanced Server (build 2195)"},
        {5, 0, 2195, Server, X86, 0, 0, 0, L"", "Microsoft Windows 2000 Server (build 2195)"},
        {5, 3, 1, Workstation, X64, 0, 48, 0, L"", "Microsoft  (build 1)"},
        // NT 4 is named by the minor-version rule of the 9x family.
        {4, 0, 1381, Workstation, X86, 0, 0, 0, L"Service Pack 6", "Microsoft Windows 95 Service Pack 6 (build 1381)"},
        {4, 10, 1, Workstation, X86, 0, 0, 0, L"", "Microsoft Windows 98 (build 1)"},
        {4, 90, 1, Workstation, X86, 0, 0, 0, L"", "Microsoft Windows ME (build 1)"},
        {4, 1, 1, Workstation, X86, 0, 0, 0, L"", "Microsoft  (build 1)"},
        // Unknown majors get no product name; from 6 on they still get the bitness.
        {3, 51, 1057, Workstation, X86, 0, 0, 0, L"", "Microsoft  (build 1057)"},
        {11, 0, 22000, Workstation, X64, 0, 48, 0, L"", "Microsoft  (build 22000), 64-bit"},
    });
}

TEST(COSVersionInfo, refusesSystemsBeforeNtBasedWindows2000) {
    struct Platform {
        uint32_t platformId;
        uint32_t major;
    };
    for (const Platform& p : {Platform{0, 0}, Platform{1, 4}, Platform{1, 3}}) {
        COSVersionInfo info;
        info.platformId = p.platformId;
        info.majorVersion = p.major;
        try {
            info.getOSName();
            ADD_FAILURE() << "platform " << p.platformId << ", major " << p.major << " was named";
        } catch (const CError& error) {
            EXPECT_EQ(error.getMessage().toStdString(), "Unsupported OS");
        }
    }
    COSVersionInfo windows98AsNt5;
    windows98AsNt5.platformId = 1;
    windows98AsNt5.majorVersion = 5;
    windows98AsNt5.minorVersion = 1;
    windows98AsNt5.buildNumber = 2600;
    EXPECT_EQ(windows98AsNt5.getOSName().toStdString(), "Microsoft Windows XP Professional (build 2600)");
}
