#include "mail/posix/childProcess.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <optional>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zuno::posix {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// File actions and attributes of one posix_spawn call.
class SpawnPlan {
public:
    SpawnPlan() {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
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
    pid_t spawn(const std::vector<std::string>& argv, int& error) const {
        error = ENOENT;
        if (argv.empty() || argv[0].empty()) return -1;
        std::vector<char*> pointers;
        for (const std::string& argument : argv) pointers.push_back(const_cast<char*>(argument.c_str()));
        pointers.push_back(nullptr);
        pid_t pid = -1;
        error = posix_spawnp(&pid, pointers[0], &m_actions, &m_attributes, pointers.data(), environ);
        return error == 0 ? pid : -1;
    }

private:
    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

milliseconds remaining(Clock::time_point deadline) {
    return std::max(milliseconds(0), std::chrono::duration_cast<milliseconds>(deadline - Clock::now()));
}

// Collects a child that has ended.
ChildOutcome reap(pid_t pid) {
    int status = 0;
    pid_t ended;
    while ((ended = waitpid(pid, &status, 0)) < 0 && errno == EINTR) {}
    if (ended != pid || !WIFEXITED(status)) return {ChildOutcome::State::Failed, 0};
    return {ChildOutcome::State::Exited, WEXITSTATUS(status)};
}

// A process descriptor becomes readable when the process ends (Linux 5.3 and later).
int openProcessDescriptor(pid_t pid) {
#ifdef SYS_pidfd_open
    return int(syscall(SYS_pidfd_open, pid, 0));
#else
    (void)pid;
    errno = ENOSYS;
    return -1;
#endif
}

// Waits on the process descriptor; false when the deadline came first.
bool endsBefore(int processFd, Clock::time_point deadline) {
    for (;;) {
        pollfd request{processFd, POLLIN, 0};
        const int ready = poll(&request, 1, int(remaining(deadline).count()));
        if (ready > 0) return true;
        if (ready == 0) return false;
        if (errno != EINTR) return true;  // reap() tells what became of it
    }
}

// Without process descriptors a thread blocks in waitpid and reports to a condition
// variable; when the deadline comes first the thread is left to collect the child.
ChildOutcome waitWithThread(pid_t pid, Clock::time_point deadline) {
    struct Shared {
        std::mutex lock;
        std::condition_variable ended;
        std::optional<ChildOutcome> outcome;
    };
    const auto shared = std::make_shared<Shared>();
    std::thread([pid, shared] {
        const ChildOutcome outcome = reap(pid);
        const std::lock_guard<std::mutex> guard(shared->lock);
        shared->outcome = outcome;
        shared->ended.notify_all();
    }).detach();
    std::unique_lock<std::mutex> guard(shared->lock);
    shared->ended.wait_until(guard, deadline, [&] { return shared->outcome.has_value(); });
    return shared->outcome.value_or(ChildOutcome{ChildOutcome::State::Running, 0});
}

ChildOutcome waitUntil(pid_t pid, Clock::time_point deadline) {
    const int processFd = openProcessDescriptor(pid);
    if (processFd < 0) return waitWithThread(pid, deadline);
    const bool ended = endsBefore(processFd, deadline);
    close(processFd);
    return ended ? reap(pid) : ChildOutcome{ChildOutcome::State::Running, 0};
}

} // namespace

ChildOutcome startAndWait(const std::vector<std::string>& argv, milliseconds wait) {
    int error = 0;
    const pid_t pid = SpawnPlan().spawn(argv, error);
    if (pid < 0) return {error == E2BIG ? ChildOutcome::State::TooLarge : ChildOutcome::State::NotStarted, 0};
    return waitUntil(pid, Clock::now() + wait);
}

} // namespace zuno::posix
