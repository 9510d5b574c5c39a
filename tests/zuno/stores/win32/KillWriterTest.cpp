// A writer killed at random moments while it stores: here this test program started again,
// told by its environment to run only the writing loop.
#include "../killWriter.h"
#include "../storeBackends.h"
#include "core/win32/windows.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>

namespace {

const char WriterVariable[] = "ZUNO_KILL_WRITER_STORE";

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

// Only in the started writer.
TEST(KillWriter, writerLoop) {
    const char* uri = std::getenv(WriterVariable);
    if (!uri) GTEST_SKIP() << "runs only as the writer of the kill test";
    storeVersionsUntilKilled(uri);
}

TEST(KillWriter, aWriterKilledAtRandomMomentsLeavesTheOldOrTheNewFile) {
    ScratchFolder folder;
    std::mt19937 random(20261123);
    for (const char* name : {"killed.xml", "killed.json"}) {
        const std::string uri = fileURIText(folder / name);
        storeFirstVersion(uri);
        for (int round = 0; round < 8; ++round) {
            const HANDLE writer = startWriter(uri);
            ASSERT_TRUE(writer);
            // Starting a process is slow under Wine: the writer stores many times meanwhile.
            Sleep(DWORD(300 + random() % 400));
            TerminateProcess(writer, 9);
            WaitForSingleObject(writer, INFINITE);
            CloseHandle(writer);
            ASSERT_NO_FATAL_FAILURE(expectOneWholeVersion(uri)) << name << " round " << round;
        }
    }
}
