#pragma once

#include <chrono>
#include <string>
#include <vector>

// Starting other programs: always from an argument vector (never a shell), looked up on
// PATH, in a session of their own with default signal handling and standard input, output
// and error on /dev/null, so nothing they print reaches the caller's terminal.
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

// Starts `argv` (argv[0] is the program) and waits up to `wait` for it to end, blocked on
// the process itself, not polling. A program still running then is left running, detached.
ChildOutcome startAndWait(const std::vector<std::string>& argv, std::chrono::milliseconds wait);

} // namespace zuno::posix
