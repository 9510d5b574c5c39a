// A process killed at any moment while it stores leaves the old or the new file, never a
// mixture of both nor a cut-off one.
#include "../storeBackends.h"

#include <zuno/IValueStore.h>

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <signal.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace zuno;

namespace {

// Large enough that writing a version takes a while.
String version(char letter) {
    return String::fromWide(std::wstring(200000, wchar_t(letter)));
}

[[noreturn]] void storeForever(const std::string& uri) {
    const P<IValueStore> store = openStore(uri);
    const P<IValueStore> sub = store->getSubStore(L"sub", true);
    const String versions[] = {version('a'), version('b')};
    for (int i = 0;; i = 1 - i) {
        store->setString(L"content", versions[i]);
        sub->setString(L"letter", i == 0 ? L"a" : L"b");
        store->store();
    }
}

} // namespace

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
        for (int round = 0; round < 60; ++round) {
            const pid_t writer = fork();
            ASSERT_GE(writer, 0);
            if (writer == 0) storeForever(uri);
            std::this_thread::sleep_for(std::chrono::microseconds(2000 + random() % 20000));
            kill(writer, SIGKILL);
            int status = 0;
            waitpid(writer, &status, 0);

            P<IValueStore> store;
            ASSERT_NO_THROW(store = openStore(uri, ValueStoreAccess::Read)) << name << " round " << round;
            const P<IValueStore> sub = store->getSubStore(L"sub", false);
            ASSERT_TRUE(sub) << name << " round " << round;
            const String letter = sub->getString(L"letter", L"?");
            ASSERT_TRUE(letter == String(L"a") || letter == String(L"b")) << name << " round " << round;
            ASSERT_EQ(store->getString(L"content", L""), version(char(letter.charAt(0)))) << name << " round " << round;
        }
        // Temporary files of killed writers may stay behind; the store itself never suffers.
    }
}
