// CStringFormat against the C library's snprintf and libfmt: the same format text with four
// fields of one kind, formatted from scratch in every iteration (the format String included;
// fmt makes its std::string), so the ratio of the two times is the ratio per field.
#include "allocationCounter.h"

#include <zuno/CStringFormat.h>
#include <zuno/String.h>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <cstdint>
#include <cstdio>

using namespace zuno;

namespace {

// Four fields per format text.
template <class Body>
void measureFields(benchmark::State& state, Body body) {
    measure(state, body);
    state.counters["fields"] = benchmark::Counter(4.0 * double(state.iterations()), benchmark::Counter::kIsRate);
}

void integerZuno(benchmark::State& state) {
    int64_t i = 123456;
    measureFields(state, [&] {
        const String text = CStringFormat(L"%d, %5d, %-8x, %08X").doInt(i).doInt(-i).doInt(i).doInt(i).getResult();
        benchmark::DoNotOptimize(text.length());
        ++i;
    });
}

void integerSnprintf(benchmark::State& state) {
    long long i = 123456;
    char text[128];
    measureFields(state, [&] {
        benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%lld, %5lld, %-8llx, %08llX", i, -i, i, i));
        ++i;
    });
}

void integerFmt(benchmark::State& state) {
    long long i = 123456;
    measureFields(state, [&] {
        benchmark::DoNotOptimize(fmt::format("{}, {:5}, {:<8x}, {:08X}", i, -i, i, i).size());
        ++i;
    });
}

void doubleZuno(benchmark::State& state) {
    double x = 3.14159;
    measureFields(state, [&] {
        const String text =
            CStringFormat(L"%g, %.3f, %e, %10.2f").doDouble(x).doDouble(x).doDouble(x).doDouble(x).getResult();
        benchmark::DoNotOptimize(text.length());
        x += 1.25;
    });
}

void doubleSnprintf(benchmark::State& state) {
    double x = 3.14159;
    char text[256];
    measureFields(state, [&] {
        benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%g, %.3f, %e, %10.2f", x, x, x, x));
        x += 1.25;
    });
}

void doubleFmt(benchmark::State& state) {
    double x = 3.14159;
    measureFields(state, [&] {
        benchmark::DoNotOptimize(fmt::format("{:g}, {:.3f}, {:e}, {:10.2f}", x, x, x, x).size());
        x += 1.25;
    });
}

void characterZuno(benchmark::State& state) {
    measureFields(state, [&] {
        const String text = CStringFormat(L"%c, %3c, %-3c, %c").doChar(U'a').doChar(U'b').doChar(U'c').doChar(U'd').getResult();
        benchmark::DoNotOptimize(text.length());
    });
}

void characterSnprintf(benchmark::State& state) {
    char text[64];
    measureFields(state, [&] { benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%c, %3c, %-3c, %c", 'a', 'b', 'c', 'd')); });
}

void characterFmt(benchmark::State& state) {
    measureFields(state, [&] { benchmark::DoNotOptimize(fmt::format("{}, {:>3}, {:<3}, {}", 'a', 'b', 'c', 'd').size()); });
}

void stringZuno(benchmark::State& state) {
    const String value(L"benchmark");
    measureFields(state, [&] {
        const String text = CStringFormat(L"%s, %12s, %-12s, %.3s").doString(value).doString(value).doString(value).doString(value).getResult();
        benchmark::DoNotOptimize(text.length());
    });
}

void stringSnprintf(benchmark::State& state) {
    const char* value = "benchmark";
    char text[128];
    measureFields(state, [&] { benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%s, %12s, %-12s, %.3s", value, value, value, value)); });
}

void stringFmt(benchmark::State& state) {
    const char* value = "benchmark";
    measureFields(state, [&] {
        benchmark::DoNotOptimize(fmt::format("{}, {:>12}, {:<12}, {:.3}", value, value, value, value).size());
    });
}

} // namespace

// Names are format/<kind>/<implementation>; scripts/bench.sh relates zuno and fmt to snprintf.
BENCHMARK(integerZuno)->Name("format/integer/zuno");
BENCHMARK(integerSnprintf)->Name("format/integer/snprintf");
BENCHMARK(integerFmt)->Name("format/integer/fmt");
BENCHMARK(doubleZuno)->Name("format/double/zuno");
BENCHMARK(doubleSnprintf)->Name("format/double/snprintf");
BENCHMARK(doubleFmt)->Name("format/double/fmt");
BENCHMARK(characterZuno)->Name("format/character/zuno");
BENCHMARK(characterSnprintf)->Name("format/character/snprintf");
BENCHMARK(characterFmt)->Name("format/character/fmt");
BENCHMARK(stringZuno)->Name("format/string/zuno");
BENCHMARK(stringSnprintf)->Name("format/string/snprintf");
BENCHMARK(stringFmt)->Name("format/string/fmt");
