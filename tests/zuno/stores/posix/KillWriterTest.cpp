// A writer killed at random moments while it stores: here a forked copy of this process.
#include "../killWriter.h"
#include "../storeBackends.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <signal.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

TEST(KillWriter, aWriterKilledAtRandomMomentsLeavesTheOldOrTheNewFile) {
    ScratchFolder folder;
    std::mt19937 random(20261123);
    for (const char* name : {"killed.xml", "killed.json"}) {
        const std::string uri = fileURIText(folder / name);
        storeFirstVersion(uri);
        for (int round = 0; round < 60; ++round) {
            const pid_t writer = fork();
            ASSERT_GE(writer, 0);
            if (writer == 0) storeVersionsUntilKilled(uri);
            std::this_thread::sleep_for(std::chrono::microseconds(2000 + random() % 20000));
            kill(writer, SIGKILL);
            int status = 0;
            waitpid(writer, &status, 0);
            ASSERT_NO_FATAL_FAILURE(expectOneWholeVersion(uri)) << name << " round " << round;
        }
        // Temporary files of killed writers may stay behind; the store itself never suffers.
    }
}
