#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>

// Allocations made through operator new in this process so far (the benchmark binary
// replaces the global operator new to count them).
uint64_t allocationCount();

// Runs `body` once per iteration and reports the allocations per iteration.
template <class Body>
void measure(benchmark::State& state, Body body) {
    const uint64_t before = allocationCount();
    for (auto _ : state) body();
    state.counters["allocs"] =
        benchmark::Counter(double(allocationCount() - before), benchmark::Counter::kAvgIterations);
}
