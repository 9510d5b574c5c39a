// Waiting for a mail client that ends at once: the tool's start-and-wait against a bare
// posix_spawn and blocking waitpid (the least any hand-off can cost), and against polling
// every 10 ms, which is how the tool waited before it blocked on a process descriptor.
// Wall-clock time, as the caller of the tool waits it.
#include "mail/posix/childProcess.h"

#include <benchmark/benchmark.h>

#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using std::chrono::milliseconds;

pid_t spawnTrue() {
    char name[] = "true";
    char* argv[] = {name, nullptr};
    pid_t pid = -1;
    return posix_spawnp(&pid, name, nullptr, nullptr, argv, environ) == 0 ? pid : -1;
}

void bareWait(benchmark::State& state) {
    for (auto _ : state) {
        const pid_t pid = spawnTrue();
        int status = 0;
        waitpid(pid, &status, 0);
        benchmark::DoNotOptimize(status);
    }
}

void startAndWait(benchmark::State& state) {
    const std::vector<std::string> argv{"true"};
    for (auto _ : state) benchmark::DoNotOptimize(zuno::posix::startAndWait(argv, milliseconds(5000)).status);
}

void pollingWait(benchmark::State& state) {
    for (auto _ : state) {
        const pid_t pid = spawnTrue();
        int status = 0;
        while (waitpid(pid, &status, WNOHANG) == 0) std::this_thread::sleep_for(milliseconds(10));
        benchmark::DoNotOptimize(status);
    }
}

} // namespace

BENCHMARK(bareWait)->Name("child/exits-at-once/bare")->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(startAndWait)->Name("child/exits-at-once/zuno")->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(pollingWait)->Name("child/exits-at-once/polling-10ms")->UseRealTime()->Unit(benchmark::kMicrosecond);
