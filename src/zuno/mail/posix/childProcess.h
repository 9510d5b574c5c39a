#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

// Starting other programs: always from an argument vector (never a shell), looked up on
// PATH, in a session of their own with default signal handling, standard input and error
// on /dev/null, so nothing they print reaches the caller's terminal.
namespace zuno::posix {

// How a started program ended, or that it is still running.
struct ChildOutcome {
    enum class State {
        NotStarted,  // the program could not be started (not found, not executable)
        TooLarge,    // its arguments exceed what the system lets one program be given
        Exited,      // it ended by itself; `status` holds its exit status
        Failed,      // it was killed by a signal, or its status was lost
        Running,     // still running when the wait ended; it is left running
    };
    State state = State::NotStarted;
    int status = 0;
};

// Starts `argv` (argv[0] is the program) with standard output on /dev/null too and waits
// up to `wait` for it to end. A program still running then is left running, detached.
ChildOutcome startAndWait(const std::vector<std::string>& argv, std::chrono::milliseconds wait);

// Runs a helper program and answers its standard output; nothing when it cannot be
// started, fails, or has not finished within `limit` (then it and its children are killed).
std::optional<std::string> runForOutput(const std::vector<std::string>& argv, std::chrono::milliseconds limit);

} // namespace zuno::posix
