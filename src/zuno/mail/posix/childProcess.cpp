#include "mail/posix/childProcess.h"

#include "core/platform.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zuno::posix {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

const unsigned PollIntervalMilliseconds = 10;

// File actions and attributes of one posix_spawn call.
class SpawnPlan {
public:
    // `outputFd` becomes the program's standard output; -1 puts it on /dev/null.
    explicit SpawnPlan(int outputFd) {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        if (outputFd >= 0)
            posix_spawn_file_actions_adddup2(&m_actions, outputFd, STDOUT_FILENO);
        else
            posix_spawn_file_actions_addopen(&m_actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

        // Signals the caller ignores (SIGCHLD, SIGPIPE, SIGHUP, ...) would stay ignored in the
        // program; it gets the defaults, an empty mask and a session of its own.
        sigset_t all, none;
        sigfillset(&all);
        sigdelset(&all, SIGKILL);
        sigdelset(&all, SIGSTOP);
        sigemptyset(&none);
        posix_spawnattr_init(&m_attributes);
        posix_spawnattr_setsigdefault(&m_attributes, &all);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    ~SpawnPlan() {
        posix_spawnattr_destroy(&m_attributes);
        posix_spawn_file_actions_destroy(&m_actions);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    // The new process's id, or -1 when it could not be started; `error` tells why.
    pid_t spawn(const std::vector<std::string>& argv, int* error = nullptr) const {
        if (argv.empty() || argv[0].empty()) return -1;
        std::vector<char*> pointers;
        for (const std::string& argument : argv) pointers.push_back(const_cast<char*>(argument.c_str()));
        pointers.push_back(nullptr);
        pid_t pid = -1;
        const int result = posix_spawnp(&pid, pointers[0], &m_actions, &m_attributes, pointers.data(), environ);
        if (error) *error = result;
        return result == 0 ? pid : -1;
    }

private:
    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

milliseconds remaining(Clock::time_point deadline) {
    return std::max(milliseconds(0), std::chrono::duration_cast<milliseconds>(deadline - Clock::now()));
}

ChildOutcome waitUntil(pid_t pid, Clock::time_point deadline) {
    for (;;) {
        int status = 0;
        const pid_t ended = waitpid(pid, &status, WNOHANG);
        if (ended == pid)
            return WIFEXITED(status) ? ChildOutcome{ChildOutcome::State::Exited, WEXITSTATUS(status)}
                                     : ChildOutcome{ChildOutcome::State::Failed, 0};
        if (ended < 0 && errno != EINTR) return {ChildOutcome::State::Failed, 0};
        if (Clock::now() >= deadline) return {ChildOutcome::State::Running, 0};
        platform::sleepMilliseconds(PollIntervalMilliseconds);
    }
}

// Appends what `fd` delivers to `output` until its end; false when the deadline came first.
bool readToEnd(int fd, Clock::time_point deadline, std::string& output) {
    char buffer[4096];
    for (;;) {
        pollfd request{fd, POLLIN, 0};
        const int ready = poll(&request, 1, int(remaining(deadline).count()));
        if (ready == 0) return false;
        if (ready < 0) {
            if (errno == EINTR) continue;
            return true;
        }
        const ssize_t count = read(fd, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return true;
        output.append(buffer, size_t(count));
    }
}

void killSession(pid_t pid) {
    kill(-pid, SIGKILL);
    while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {}
}

} // namespace

ChildOutcome startAndWait(const std::vector<std::string>& argv, milliseconds wait) {
    int error = 0;
    const pid_t pid = SpawnPlan(-1).spawn(argv, &error);
    if (pid < 0) return {error == E2BIG ? ChildOutcome::State::TooLarge : ChildOutcome::State::NotStarted, 0};
    return waitUntil(pid, Clock::now() + wait);
}

std::optional<std::string> runForOutput(const std::vector<std::string>& argv, milliseconds limit) {
    int pipeFds[2];
    if (pipe2(pipeFds, O_CLOEXEC) != 0) return std::nullopt;
    const pid_t pid = SpawnPlan(pipeFds[1]).spawn(argv);
    close(pipeFds[1]);
    if (pid < 0) {
        close(pipeFds[0]);
        return std::nullopt;
    }
    const Clock::time_point deadline = Clock::now() + limit;
    std::string output;
    const bool complete = readToEnd(pipeFds[0], deadline, output);
    close(pipeFds[0]);
    const ChildOutcome outcome = complete ? waitUntil(pid, deadline) : ChildOutcome{ChildOutcome::State::Running, 0};
    if (outcome.state == ChildOutcome::State::Running) killSession(pid);
    if (outcome.state != ChildOutcome::State::Exited || outcome.status != 0) return std::nullopt;
    return output;
}

} // namespace zuno::posix
