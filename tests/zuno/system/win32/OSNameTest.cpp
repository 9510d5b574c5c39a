#include <zuno/CSystem.h>

#include <gtest/gtest.h>

using namespace zuno;

// The version record read from the running system names a 64-bit NT system of version 6 or later.
TEST(CSystem, namesTheRunningSystem) {
    const String name = CSystem().getOSName();
    EXPECT_TRUE(name.startsWith(L"Microsoft Windows ") && name.contains(L" (build ") && name.contains(L"), 64-bit")) << name;
}
