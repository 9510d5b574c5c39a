#include "TemporaryFolder.h"

#include <zuno/posix/childProcess.h>

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <sstream>
#include <thread>

using namespace zuno::posix;
using State = ChildOutcome::State;
using std::chrono::milliseconds;

namespace {

const milliseconds Generous(30000);
const milliseconds Short(100);

std::vector<std::string> shell(const std::string& script) {
    return {"/bin/sh", "-c", script};
}

// Waits for a program to write the file; its content.
std::string awaitFile(const std::string& path) {
    for (int i = 0; i < 1000 && TemporaryFolder::read(path).empty(); ++i) std::this_thread::sleep_for(milliseconds(10));
    return TemporaryFolder::read(path);
}

// Whether a process exists and has not ended (a zombie has ended).
bool isAlive(pid_t pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string pidText, name, state;
    return stat >> pidText >> name >> state && state != "Z";
}

bool endsSoon(pid_t pid) {
    for (int i = 0; i < 500 && isAlive(pid); ++i) std::this_thread::sleep_for(milliseconds(10));
    return !isAlive(pid);
}

} // namespace

TEST(ChildProcessTest, OutcomeTellsHowTheProgramEnded) {
    const ChildOutcome exited = startAndWait(shell("exit 7"), Generous);
    EXPECT_EQ(exited.state, State::Exited);
    EXPECT_EQ(exited.status, 7);
    EXPECT_EQ(startAndWait(shell("exit 0"), Generous).status, 0);
    EXPECT_EQ(startAndWait(shell("kill -9 $$"), Generous).state, State::Failed);
    EXPECT_EQ(startAndWait({"zuno-no-such-program"}, Generous).state, State::NotStarted);
    EXPECT_EQ(startAndWait({"/etc/hostname"}, Generous).state, State::NotStarted) << "not executable";
    EXPECT_EQ(startAndWait({""}, Generous).state, State::NotStarted);
    EXPECT_EQ(startAndWait({}, Generous).state, State::NotStarted);
}

TEST(ChildProcessTest, ArgumentsArriveAsGivenWithoutAShell) {
    TemporaryFolder folder;
    const std::string record = folder / "args";
    const std::vector<std::string> texts{"$(touch " + folder / "pwned" + ")", "a b", "'\"", "*", "", "line\nbreak"};
    std::vector<std::string> argv = shell("for a; do printf '%s|' \"$a\"; done > \"$0\"");
    argv.push_back(record);
    argv.insert(argv.end(), texts.begin(), texts.end());
    ASSERT_EQ(startAndWait(argv, Generous).status, 0);
    EXPECT_EQ(TemporaryFolder::read(record), "$(touch " + folder / "pwned" + ")|a b|'\"|*||line\nbreak|");
    EXPECT_FALSE(std::ifstream(folder / "pwned").good());
}

// The program must not inherit the caller's terminal, ignored signals or session.
TEST(ChildProcessTest, ProgramRunsOnItsOwnWithDevNullAndDefaultSignals) {
    TemporaryFolder folder;
    const std::string record = folder / "record";
    const auto previous = std::signal(SIGINT, SIG_IGN);
    const ChildOutcome outcome = startAndWait(
        {"/bin/sh", "-c",
         "fds=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2);"
         "{ echo \"$fds\"; grep SigIgn /proc/$$/status; cat /proc/$$/stat; } > \"$0\"; echo noise; echo noise >&2",
         record},
        Generous);
    std::signal(SIGINT, previous);
    ASSERT_EQ(outcome.state, State::Exited);

    std::istringstream lines(TemporaryFolder::read(record));
    std::string line;
    for (int fd = 0; fd < 3; ++fd) {
        std::getline(lines, line);
        EXPECT_EQ(line, "/dev/null") << "fd " << fd;
    }
    std::getline(lines, line);
    const unsigned long long ignored = std::stoull(line.substr(line.find('\t') + 1), nullptr, 16);
    EXPECT_EQ(ignored & 0x7FFFFFFFull, 0u) << line << " (the C library's own signals above 31 do not matter)";
    std::getline(lines, line);
    std::istringstream stat(line.substr(line.rfind(')') + 2));
    std::string state;
    long parent = 0, group = 0, session = 0;
    stat >> state >> parent >> group >> session;
    EXPECT_EQ(session, std::stol(line)) << "leads a session of its own";
}

TEST(ChildProcessTest, ProgramStillRunningAfterTheWaitIsLeftRunning) {
    TemporaryFolder folder;
    const std::string pidFile = folder / "pid";
    const ChildOutcome outcome = startAndWait({"/bin/sh", "-c", "echo $$ > \"$0\"; exec sleep 60", pidFile}, Short);
    EXPECT_EQ(outcome.state, State::Running);
    const pid_t pid = std::stoi(awaitFile(pidFile));
    EXPECT_TRUE(isAlive(pid));
    kill(pid, SIGKILL);
    EXPECT_TRUE(endsSoon(pid));
}

TEST(ChildProcessTest, OutputOfAHelperIsCaptured) {
    EXPECT_EQ(runForOutput(shell("echo hello; echo error >&2; printf 'x\\0y'"), Generous),
              std::string("hello\nx\0y", 9));
    EXPECT_EQ(runForOutput(shell("true"), Generous), "");
    EXPECT_EQ(runForOutput(shell("echo partial; exit 3"), Generous), std::nullopt);
    EXPECT_EQ(runForOutput({"zuno-no-such-program"}, Generous), std::nullopt);
}

// A helper that hangs is killed with everything it started.
TEST(ChildProcessTest, HelperThatDoesNotFinishIsKilled) {
    TemporaryFolder folder;
    const std::string pids = folder / "pids";
    EXPECT_EQ(runForOutput({"/bin/sh", "-c", "sleep 60 & echo $$ $! > \"$0\"; echo started; wait", pids}, Short),
              std::nullopt);
    std::istringstream started(awaitFile(pids));
    pid_t helper = 0, grandchild = 0;
    ASSERT_TRUE(started >> helper >> grandchild);
    EXPECT_TRUE(endsSoon(helper));
    EXPECT_TRUE(endsSoon(grandchild));
}
