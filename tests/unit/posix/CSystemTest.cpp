#include <zuno/CSystem.h>

#include <gtest/gtest.h>

#include <sys/utsname.h>

using namespace zuno;

TEST(CSystemPosixTest, OSNameIsKernelReleaseAndMachine) {
    utsname names;
    ASSERT_EQ(uname(&names), 0);
    const std::string name = CSystem().getOSName().toStdString();
    EXPECT_EQ(name.rfind(std::string(names.sysname) + " " + names.release + " (", 0), 0u) << name;
    EXPECT_EQ(name.back(), ')') << name;
}
