#include "../storeBackends.h"
#include "stores/win32/CRegistryValueStore.h"

#include <zuno/CError.h>
#include <zuno/CObjectError.h>
#include <zuno/CURI.h>
#include <zuno/IValueStoreManager.h>

#include <gtest/gtest.h>

#include <string>

using namespace zuno;

namespace {

const std::wstring TestKey = L"Software\\zuno-registry-tests-" + std::to_wstring(GetCurrentProcessId());
const std::string TestURI = "registry:HKEY_CURRENT_USER/Software/zuno-registry-tests-" + std::to_string(GetCurrentProcessId());

class RegistryValueStore : public testing::Test {
protected:
    void SetUp() override { RegDeleteTreeW(HKEY_CURRENT_USER, TestKey.c_str()); }
    void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, TestKey.c_str()); }

    static void setRaw(const wchar_t* subKey, const wchar_t* name, DWORD type, const void* data, DWORD size) {
        ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, (TestKey + subKey).c_str(), name, type, data, size), ERROR_SUCCESS);
    }
};

} // namespace

TEST_F(RegistryValueStore, theFourBaseKeysOpenAndAnyOtherIsRefusedByName) {
    for (const char* base : {"HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE", "HKEY_CLASSES_ROOT", "HKEY_USERS"}) {
        EXPECT_TRUE(openStore(std::string("registry:") + base + "/", ValueStoreAccess::Read)) << base;
    }
    for (const char* base : {"HKEY_CURRENT_CONFIG", "HKEY_PERFORMANCE_DATA", "HKCU", "Software"}) {
        try {
            openStore(std::string("registry:") + base + "/Software", ValueStoreAccess::Read);
            ADD_FAILURE() << base;
        } catch (const CError& error) {
            EXPECT_EQ(error.getMessage().toStdString(), std::string("Unknown registry base key: ") + base);
        }
    }
}

TEST_F(RegistryValueStore, aPathEndingInASlashOpensTheKeyItselfWhoseDefaultValueHasTheEmptyName) {
    const wchar_t command[] = L"\"C:\\Program Files\\Client\\client.exe\" \"%1\"";
    setRaw(L"\\shell\\open\\command", nullptr, REG_SZ, command, sizeof command);
    setRaw(L"\\shell\\open\\command", L"other", REG_SZ, L"x", 4);
    for (const std::string& path : {TestURI + "/shell/open/command/", TestURI + "/shell/open/command",
                                    TestURI + "//shell//open/command//"}) {
        const P<IValueStore> store = openStore(path, ValueStoreAccess::Read);
        EXPECT_EQ(store->getString(L"", L""), String(command)) << path;
        EXPECT_EQ(store->getString(L"other", L""), String(L"x")) << path;
    }
}

TEST_F(RegistryValueStore, aMissingKeyOpenedForReadingIsEmptyAndOpenedForWritingIsCreated) {
    const P<IValueStore> reader = openStore(TestURI + "/missing", ValueStoreAccess::Read);
    ASSERT_TRUE(reader);
    EXPECT_TRUE(reader->getValueNames().empty());
    EXPECT_EQ(reader->getString(L"", L"none"), String(L"none"));
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, (TestKey + L"\\missing").c_str(), 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);

    openStore(TestURI + "/missing/deeper")->setString(L"", L"default");
    EXPECT_EQ(openStore(TestURI + "/missing", ValueStoreAccess::Read)->getSubStore(L"deeper", false)->getString(L"", L""),
              String(L"default"));
}

TEST_F(RegistryValueStore, valuesWrittenByOtherProgramsReadAsTheirKind) {
    const DWORD dword = 0xFFFFFFFF;
    const uint64_t qword = UINT64_MAX;
    setRaw(L"", L"dword", REG_DWORD, &dword, sizeof dword);
    setRaw(L"", L"qword", REG_QWORD, &qword, sizeof qword);
    setRaw(L"", L"unterminated", REG_SZ, L"abc", 3 * sizeof(wchar_t));
    setRaw(L"", L"expand", REG_EXPAND_SZ, L"%TEMP%\\x", 9 * sizeof(wchar_t));
    setRaw(L"", L"binary", REG_BINARY, "\x01\x02", 2);
    const P<IValueStore> store = openStore(TestURI, ValueStoreAccess::Read);
    EXPECT_EQ(store->getInt64(L"dword", 0), 0xFFFFFFFF);
    EXPECT_EQ(store->getUInt64(L"qword", 0), UINT64_MAX);
    EXPECT_EQ(store->getInt64(L"qword", 0), -1);
    EXPECT_TRUE(store->getBoolean(L"dword", false));
    EXPECT_EQ(store->getString(L"unterminated", L""), String(L"abc"));
    EXPECT_EQ(store->getString(L"expand", L""), String(L"%TEMP%\\x")) << "kept unexpanded";
    EXPECT_THROW(store->getString(L"binary", L""), CParseError);
    EXPECT_THROW(store->loadBinary("x"), CMethodNotImplementedError);
}

TEST_F(RegistryValueStore, aCopyThatFailsInTheRegistryNamesTheRegistryError) {
    const P<IValueStore> source = openStore(TestURI + "/source");
    source->setString(L"v", L"1");
    ScratchFolder folder;
    const P<IValueStore> target = openStore(fileURIText(folder / "copy.xml"));
    ASSERT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, (TestKey + L"\\source").c_str()), ERROR_SUCCESS);
    try {
        source->assignTo(target);
        ADD_FAILURE() << "the key is gone";
    } catch (const CError& error) {
        EXPECT_EQ(error.getMessage().toStdString().rfind("CRegistryValueStore::assignTo failed with '", 0), 0u)
            << error.getMessage();
        EXPECT_EQ(error.getMessage().toStdString().back(), '\'');
    }
}
