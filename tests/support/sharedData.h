#pragma once

#include <string>

// The project's shared test data (../shared/data beside the checkout), or an empty text
// when a clone has none; tests that need it skip with a message then.
std::string sharedDataDir();

#define ZUNO_REQUIRE_SHARED_DATA(dir)                                                         \
    const std::string dir = sharedDataDir();                                                  \
    if (dir.empty()) GTEST_SKIP() << "../shared/data is not present beside the checkout"
