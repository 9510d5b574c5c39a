#include <zuno/COSVersionInfo.h>
#include <zuno/CError.h>

#include <string>

namespace zuno {

namespace {

using Info = COSVersionInfo;

// GetProductInfo's product types, as the name spells them.
const wchar_t* editionText(uint32_t edition) {
    switch (edition) {
    case 1: return L"Ultimate Edition";
    case 2: return L"Home Basic Edition";
    case 3: return L"Home Premium Edition";
    case 4:
    case 10: return L"Enterprise Edition";
    case 6: return L"Business Edition";
    case 7: return L"Standard Edition";
    case 8: return L"Datacenter Edition";
    case 9: return L"Small Business Server";
    case 11: return L"Starter Edition";
    case 12: return L"Datacenter Edition (core installation)";
    case 13: return L"Standard Edition (core installation)";
    case 14: return L"Enterprise Edition (core installation)";
    case 15: return L"Enterprise Edition for Itanium-based Systems";
    case 17: return L"Web Server Edition";
    case 18: return L"Cluster Server Edition";
    case 25: return L"Small Business Server Premium Edition";
    case 47: return L"Starter N Edition";
    case 48: return L"Professional";
    case 49: return L"Professional N Edition";
    case 66: return L"Starter E Edition";
    case 67: return L"Home Basic E Edition";
    case 68: return L"Premium E Edition";
    case 69: return L"Professional E Edition";
    case 70: return L"Enterprise E Edition";
    case 71: return L"Ultimate E Edition";
    default: return L"";
    }
}

// Windows 10 and 11 releases, by exact build number.
const wchar_t* releaseSuffix(uint32_t build) {
    switch (build) {
    case 10240: return L", 1507 Threshold 1 (07/2015)";
    case 10586: return L", 1511 Threshold 2 - November Update (11/2015)";
    case 14393: return L", 1607 Redstone 1 - Anniversary Update (08/2016)";
    case 15063: return L", 1703 Redstone 2 - Creators Update (4/2017)";
    case 16299: return L", 1709 Redstone 3 - Fall Creators Update (10/2017)";
    case 17134: return L", 1803 Redstone 4 - April 2018 Update";
    case 17763: return L", 1809 Redstone 5 - October 2018 Update";
    case 18362: return L", 1903 19H1 - May 2019 Update";
    case 18363: return L", 1909 19H2 - November 2019 Update";
    case 19041: return L", 2004 20H1 - May 2020 Update";
    case 19042: return L", 20H2 - October 2020 Update";
    case 19043: return L", 21H1 - May 2021 Update";
    case 22000: return L", 21H2 - Windows 11 Insider Preview";
    default: return L"";
    }
}

// Vista up to the Windows 10 previews that still reported 6.4.
std::wstring windows6Name(const Info& info) {
    const bool workstation = info.isWorkstation();
    switch (info.minorVersion) {
    case 0: return workstation ? L"Windows Vista " : L"Windows Server 2008 ";
    case 1: return workstation ? L"Windows 7 " : L"Windows Server 2008 R2 ";
    case 2: return workstation ? L"Windows 8 " : L"Windows Server 2012 ";
    case 3: return workstation ? L"Windows 8.1 " : L"Windows Server 2012 R2 ";
    case 4: return workstation ? L"Windows 10 " : L"Windows 10 Server ";
    default: return L"";
    }
}

std::wstring windows10Name(const Info& info) {
    const bool workstation = info.isWorkstation();
    if (info.buildNumber < 22000) return workstation ? L"Windows 10 " : L"Windows 10 Server ";
    return workstation ? L"Windows 11 " : L"Windows 11 Server ";
}

std::wstring server2003Edition(const Info& info) {
    switch (info.processorArchitecture) {
    case Info::ArchitectureItanium:
        if (info.hasSuite(Info::SuiteDatacenter)) return L"Datacenter Edition for Itanium-based Systems";
        if (info.hasSuite(Info::SuiteEnterprise)) return L"Enterprise Edition for Itanium-based Systems";
        return L"";
    case Info::ArchitectureX64:
        if (info.hasSuite(Info::SuiteDatacenter)) return L"Datacenter x64 Edition";
        if (info.hasSuite(Info::SuiteEnterprise)) return L"Enterprise x64 Edition";
        return L"Standard x64 Edition";
    default:
        if (info.hasSuite(Info::SuiteComputeServer)) return L"Compute Cluster Edition";
        if (info.hasSuite(Info::SuiteDatacenter)) return L"Datacenter Edition";
        if (info.hasSuite(Info::SuiteEnterprise)) return L"Enterprise Edition";
        if (info.hasSuite(Info::SuiteBlade)) return L"Web Edition";
        return L"Standard Edition";
    }
}

// Windows Server 2003 and its relatives (XP x64, Home Server, Storage Server).
std::wstring windows52Name(const Info& info) {
    std::wstring name;
    if (info.serverR2 != 0) {
        name = L"Windows Server 2003 R2, ";
    } else if (info.hasSuite(Info::SuiteStorageServer)) {
        name = L"Windows Storage Server 2003";
    } else if (!info.hasSuite(Info::SuiteHomeServer) && info.isWorkstation()
               && info.processorArchitecture == Info::ArchitectureX64) {
        name = L"Windows XP Professional x64 Edition";
    } else {
        name = info.hasSuite(Info::SuiteHomeServer) ? L"Windows Home Server" : L"Windows Server 2003, ";
    }
    if (!info.isWorkstation()) name += server2003Edition(info);
    return name;
}

std::wstring windows2000Name(const Info& info) {
    if (info.isWorkstation()) return L"Windows 2000 Professional";
    if (info.hasSuite(Info::SuiteDatacenter)) return L"Windows 2000 Datacenter Server";
    if (info.hasSuite(Info::SuiteEnterprise)) return L"Windows 2000 Advanced Server";
    return L"Windows 2000 Server";
}

std::wstring windows5Name(const Info& info) {
    switch (info.minorVersion) {
    case 2: return windows52Name(info);
    case 1: return info.hasSuite(Info::SuitePersonal) ? L"Windows XP Home Edition" : L"Windows XP Professional";
    case 0: return windows2000Name(info);
    default: return L"";
    }
}

// Only an NT 4 system gets here (the older ones are refused), and it is named by its
// minor version as the 9x family would be.
std::wstring windows4Name(const Info& info) {
    switch (info.minorVersion) {
    case 0: return L"Windows 95";
    case 10: return L"Windows 98";
    case 90: return L"Windows ME";
    default: return L"";
    }
}

std::wstring productName(const Info& info) {
    switch (info.majorVersion) {
    case 10: return windows10Name(info) + editionText(info.edition);
    case 6: return windows6Name(info) + editionText(info.edition);
    case 5: return windows5Name(info);
    case 4: return windows4Name(info);
    default: return L"";
    }
}

const wchar_t* bitness(const Info& info) {
    if (info.majorVersion < 6) return L"";
    switch (info.processorArchitecture) {
    case Info::ArchitectureX64: return L", 64-bit";
    case Info::ArchitectureX86: return L", 32-bit";
    default: return L"";
    }
}

} // namespace

String COSVersionInfo::getOSName() const {
    if (platformId != PlatformNT && majorVersion < 5) throw CError(L"Unsupported OS");

    std::wstring name = L"Microsoft " + productName(*this);
    if (!servicePack.isEmpty()) name += L" " + servicePack.toStdWString();
    name += L" (build " + std::to_wstring(int32_t(buildNumber)) + L")";
    name += bitness(*this);
    if (majorVersion == 10) name += releaseSuffix(buildNumber);
    return String::fromWide(name);
}

} // namespace zuno
