#pragma once

#include <cstdint>

// Allocations made through operator new in this process so far (the benchmark binary
// replaces the global operator new to count them).
uint64_t allocationCount();
