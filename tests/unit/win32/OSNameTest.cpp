#include <zuno/CSystem.h>
#include <zuno/win32/readOSVersionInfo.h>

#include <gtest/gtest.h>

using namespace zuno;

TEST(readOSVersionInfo, readsTheRunningNtSystem) {
    const COSVersionInfo info = readOSVersionInfo();

    EXPECT_EQ(info.platformId, COSVersionInfo::PlatformNT);
    EXPECT_GE(info.majorVersion, 6u);
    EXPECT_GT(info.buildNumber, 0u);
    EXPECT_EQ(info.processorArchitecture, COSVersionInfo::ArchitectureX64);
}

TEST(CSystem, namesTheRunningSystem) {
    const String name = CSystem().getOSName();

    EXPECT_TRUE(name.startsWith(L"Microsoft Windows ")) << name;
    EXPECT_TRUE(name.contains(L" (build ")) << name;
    EXPECT_TRUE(name.contains(L"), 64-bit")) << name;
}
