#include "TemporaryFolder.h"

#include "mail/posix/childProcess.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sstream>
#include <thread>

// Starting mail clients is covered end to end by the mailer's hand-off tests; these cover
// the helpers run for their output, and what every started program inherits.

using namespace zuno::posix;
using Strings = std::vector<std::string>;
using std::chrono::milliseconds;

namespace {

const milliseconds Generous(30000);

Strings shell(const std::string& script, const std::string& argument = "") {
    return {"/bin/sh", "-c", script, "sh", argument};
}

// Waits up to 10 seconds for a process to end (a zombie has ended); whether it did.
bool endsSoon(pid_t pid) {
    for (int i = 0; i < 1000; ++i, std::this_thread::sleep_for(milliseconds(10))) {
        std::istringstream stat(TemporaryFolder::read("/proc/" + std::to_string(pid) + "/stat"));
        std::string pidText, name, state;
        if (!(stat >> pidText >> name >> state) || state == "Z") return true;
    }
    return false;
}

} // namespace

// A started program must not inherit the caller's terminal or ignored signals.
TEST(ChildProcessTest, ProgramGetsDevNullAndDefaultSignals) {
    const int savedInput = dup(STDIN_FILENO);
    int terminal[2];
    ASSERT_EQ(pipe(terminal), 0);
    dup2(terminal[0], STDIN_FILENO);
    const auto previous = std::signal(SIGINT, SIG_IGN);
    const std::optional<std::string> output =
        runForOutput(shell("readlink /proc/$$/fd/0 /proc/$$/fd/2; grep SigIgn /proc/$$/status"), Generous);
    std::signal(SIGINT, previous);
    dup2(savedInput, STDIN_FILENO);
    for (const int fd : {savedInput, terminal[0], terminal[1]}) close(fd);
    ASSERT_TRUE(output);
    EXPECT_EQ(output->substr(0, 20), "/dev/null\n/dev/null\n");
    const unsigned long long ignored = std::stoull(output->substr(output->find('\t') + 1), nullptr, 16);
    EXPECT_EQ(ignored & 0x7FFFFFFFull, 0u) << *output << " (the C library's own signals above 31 do not matter)";
}

// A helper that fails or hangs gives nothing; one that hangs is killed with everything it started.
TEST(ChildProcessTest, OutputOfAHelperIsCaptured) {
    EXPECT_EQ(runForOutput(shell("echo hello; echo error >&2; printf 'x\\0y'"), Generous),
              std::string("hello\nx\0y", 9));
    EXPECT_EQ(runForOutput(shell("true"), Generous), "");
    EXPECT_EQ(runForOutput(shell("echo partial; exit 3"), Generous), std::nullopt);
    EXPECT_EQ(runForOutput(shell("kill -9 $$"), Generous), std::nullopt);
    EXPECT_EQ(runForOutput({"zuno-no-such-program"}, Generous), std::nullopt);
    EXPECT_EQ(startAndWait({"/etc/hostname"}, Generous).state, ChildOutcome::State::NotStarted) << "not executable";

    TemporaryFolder folder;
    const Strings hanging = shell("sleep 60 & echo $$ $! > \"$1\"; echo started; wait", folder / "pids");
    EXPECT_EQ(runForOutput(hanging, milliseconds(100)), std::nullopt);
    std::istringstream started(TemporaryFolder::read(folder / "pids"));
    pid_t helper = 0, grandchild = 0;
    ASSERT_TRUE(started >> helper >> grandchild);
    EXPECT_TRUE(endsSoon(helper));
    EXPECT_TRUE(endsSoon(grandchild));
}
