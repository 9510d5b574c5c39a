// A process killed at any moment while it stores leaves the old or the new file, never a
// mixture of both nor a cut-off one. The writer is this test program started again, told
// by its environment to run only the writing loop.
#include "../storeBackends.h"
#include "core/win32/windows.h"

#include <zuno/IValueStore.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>

using namespace zuno;

namespace {

const char WriterVariable[] = "ZUNO_KILL_WRITER_STORE";

String version(char letter) {
    return String::fromWide(std::wstring(200000, wchar_t(letter)));
}

// Starts this program as the writer of `uri`; answers its process handle.
HANDLE startWriter(const std::string& uri) {
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    SetEnvironmentVariableA(WriterVariable, uri.c_str());
    std::wstring commandLine = L"\"" + std::wstring(program) + L"\" --gtest_filter=KillWriter.writerLoop";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    const BOOL started = CreateProcessW(program, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                        &startup, &process);
    SetEnvironmentVariableA(WriterVariable, nullptr);
    if (!started) return nullptr;
    CloseHandle(process.hThread);
    return process.hProcess;
}

} // namespace

// Only in the started writer: stores the two versions in turn until it is killed.
TEST(KillWriter, writerLoop) {
    const char* uri = std::getenv(WriterVariable);
    if (!uri) GTEST_SKIP() << "runs only as the writer of the kill test";
    const P<IValueStore> store = openStore(uri);
    const P<IValueStore> sub = store->getSubStore(L"sub", true);
    const String versions[] = {version('a'), version('b')};
    for (int i = 0;; i = 1 - i) {
        store->setString(L"content", versions[i]);
        sub->setString(L"letter", i == 0 ? L"a" : L"b");
        store->store();
    }
}

TEST(KillWriter, aWriterKilledAtRandomMomentsLeavesTheOldOrTheNewFile) {
    ScratchFolder folder;
    std::mt19937 random(20261123);
    for (const char* name : {"killed.xml", "killed.json"}) {
        const std::string uri = fileURIText(folder / name);
        {
            P<IValueStore> store = openStore(uri);
            store->setString(L"content", version('a'));
            store->getSubStore(L"sub", true)->setString(L"letter", L"a");
            store->store();
        }
        for (int round = 0; round < 8; ++round) {
            const HANDLE writer = startWriter(uri);
            ASSERT_TRUE(writer);
            // Starting a process is slow under Wine: the writer stores many times meanwhile.
            Sleep(DWORD(300 + random() % 400));
            TerminateProcess(writer, 9);
            WaitForSingleObject(writer, INFINITE);
            CloseHandle(writer);

            P<IValueStore> store;
            ASSERT_NO_THROW(store = openStore(uri, ValueStoreAccess::Read)) << name << " round " << round;
            const P<IValueStore> sub = store->getSubStore(L"sub", false);
            ASSERT_TRUE(sub) << name << " round " << round;
            const String letter = sub->getString(L"letter", L"?");
            ASSERT_TRUE(letter == String(L"a") || letter == String(L"b")) << name << " round " << round;
            ASSERT_EQ(store->getString(L"content", L""), version(char(letter.charAt(0)))) << name << " round " << round;
        }
    }
}
