#include "../storeBackends.h"
#include "core/win32/windows.h"

#include <zuno/CURIError.h>

#include <gtest/gtest.h>

#include <string>

using namespace zuno;

TEST(StorePaths, aStoreOnADriveThatDoesNotExistRaisesAFileError) {
    const DWORD drives = GetLogicalDrives();
    char letter = 0;
    for (char candidate = 'Q'; candidate <= 'Y' && !letter; ++candidate) {
        if (!(drives & (1u << (candidate - 'A')))) letter = candidate;
    }
    if (!letter) GTEST_SKIP() << "every drive letter from Q to Y is in use";
    for (const char* name : {"store.xml", "store.json"}) {
        const std::string uri = std::string("file:///") + letter + ":/" + name;
        for (const ValueStoreAccess access : {ValueStoreAccess::Read, ValueStoreAccess::ReadWrite}) {
            EXPECT_THROW(openStore(uri, access), CFileError) << uri;
        }
    }
}
