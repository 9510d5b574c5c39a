#include "TemporaryFolder.h"

#include "mail/posix/childProcess.h"

#include <gtest/gtest.h>

#include <csignal>

// Starting mail clients, their exit statuses and the wait are covered end to end by the
// mailer's hand-off tests; this covers what every started program inherits.

using namespace zuno::posix;
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
        shell("r=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2; grep SigIgn /proc/$$/status)\n"
              "echo \"$r\" > \"$1\"",
              folder / "report"),
        Generous);
    std::signal(SIGINT, previous);
    dup2(savedInput, STDIN_FILENO);
    for (const int fd : {savedInput, terminal[0], terminal[1]}) close(fd);
    ASSERT_EQ(outcome.state, ChildOutcome::State::Exited);
    const std::string report = TemporaryFolder::read(folder / "report");
    EXPECT_EQ(report.substr(0, 30), "/dev/null\n/dev/null\n/dev/null\n");
    const unsigned long long ignored = std::stoull(report.substr(report.find('\t') + 1), nullptr, 16);
    EXPECT_EQ(ignored & 0x7FFFFFFFull, 0u) << report << " (the C library's own signals above 31 do not matter)";
}
