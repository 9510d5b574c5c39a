#include "TemporaryFolder.h"

#include "mail/posix/childProcess.h"

#include <gtest/gtest.h>

#include <climits>
#include <csignal>
#include <thread>

// Starting mail clients is covered end to end by the mailer's hand-off tests; these cover
// what every started program inherits and how its end is told.

using namespace zuno::posix;
using State = ChildOutcome::State;
using Strings = std::vector<std::string>;
using std::chrono::milliseconds;

namespace {

const milliseconds Generous(30000);

Strings shell(const std::string& script, const std::string& argument = "") {
    return {"/bin/sh", "-c", script, "sh", argument};
}

} // namespace

// A started program must not inherit the caller's terminal or ignored signals.
TEST(ChildProcessTest, ProgramGetsDevNullAndDefaultSignals) {
    TemporaryFolder folder;
    const int savedInput = dup(STDIN_FILENO);
    int terminal[2];
    ASSERT_EQ(pipe(terminal), 0);
    dup2(terminal[0], STDIN_FILENO);
    const auto previous = std::signal(SIGINT, SIG_IGN);
    const ChildOutcome outcome = startAndWait(
        shell("r=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2; grep SigIgn /proc/$$/status); echo \"$r\" > \"$1\"",
              folder / "report"),
        Generous);
    std::signal(SIGINT, previous);
    dup2(savedInput, STDIN_FILENO);
    for (const int fd : {savedInput, terminal[0], terminal[1]}) close(fd);
    ASSERT_EQ(outcome.state, State::Exited);
    const std::string report = TemporaryFolder::read(folder / "report");
    EXPECT_EQ(report.substr(0, 30), "/dev/null\n/dev/null\n/dev/null\n");
    const unsigned long long ignored = std::stoull(report.substr(report.find('\t') + 1), nullptr, 16);
    EXPECT_EQ(ignored & 0x7FFFFFFFull, 0u) << report << " (the C library's own signals above 31 do not matter)";
}

TEST(ChildProcessTest, OutcomeTellsHowTheProgramEnded) {
    const std::tuple<Strings, State, int> cases[] = {
        {shell("exit 0"), State::Exited, 0},
        {shell("exit 1"), State::Exited, 1},
        {shell("exit 255"), State::Exited, 255},
        {shell("kill -TERM $$"), State::Failed, 0},
        {shell("kill -KILL $$"), State::Failed, 0},
        {{"zuno-no-such-program"}, State::NotStarted, 0},
        {{"/etc/hostname"}, State::NotStarted, 0},  // not executable
        {{""}, State::NotStarted, 0},
        {{"/bin/true", std::string(200 * 1024, 'x')}, State::TooLarge, 0},
    };
    for (const auto& [argv, state, status] : cases) {
        const ChildOutcome outcome = startAndWait(argv, Generous);
        EXPECT_EQ(outcome.state, state) << argv[0] << " " << argv.back().substr(0, 20);
        EXPECT_EQ(outcome.status, status) << argv.back().substr(0, 20);
    }
}

// A program that ends at once is seen ending at once, however long the wait may be; one
// that runs on is left running when the wait is over, a zero wait included.
TEST(ChildProcessTest, WaitEndsWithTheProgramOrTheTime) {
    const auto started = std::chrono::steady_clock::now();
    EXPECT_EQ(startAndWait(shell("exit 3"), milliseconds(600000)).state, State::Exited);
    EXPECT_LT(std::chrono::steady_clock::now() - started, milliseconds(60000)) << "the wait did not end with the program";

    TemporaryFolder folder;
    for (const milliseconds wait : {milliseconds(0), milliseconds(50)}) {
        std::remove((folder / "pid").c_str());
        EXPECT_EQ(startAndWait(shell("echo $$ > \"$1\"; exec sleep 60", folder / "pid"), wait).state, State::Running);
        pid_t pid = 0;
        for (int i = 0; i < 3000 && !(pid = std::atoi(TemporaryFolder::read(folder / "pid").c_str())); ++i)
            std::this_thread::sleep_for(milliseconds(10));
        ASSERT_NE(pid, 0);
        EXPECT_EQ(getsid(pid), pid) << "the program runs on in a session of its own";
        kill(pid, SIGKILL);
    }
}
