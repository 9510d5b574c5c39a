#!/usr/bin/env bash
# Builds the benchmarks (Linux, Release) and runs them; then prints each library's time
# relative to its reference (nlohmann-json for JSON, snprintf for formatting), and the speed
# of the text conversions relative to mbstowcs and a plain decoder loop, and the wall-clock cost
# of waiting for a child process that ends at once.
# Ratios use CPU time. Arguments are passed to the benchmark binary, e.g. --benchmark_filter=json/parse.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake -S . -B build/bench -G Ninja -Wno-dev -DCMAKE_BUILD_TYPE=Release -DZUNO_BUILD_BENCHMARKS=ON >/dev/null
cmake --build build/bench -j "$(nproc)" --target zuno_bench

results=build/bench/results.json
build/bench/bench/zuno_bench --benchmark_out="$results" --benchmark_out_format=json "$@"

python3 - "$results" <<'PY'
import json, sys
times, allocs = {}, {}
for b in json.load(open(sys.argv[1]))["benchmarks"]:
    # One figure per benchmark: the median when repetitions were asked for.
    if b.get("run_type") == "aggregate" and b.get("aggregate_name") != "median":
        continue
    name = b.get("run_name", b["name"])
    if name in times and b.get("run_type") != "aggregate":
        continue
    times[name] = b["cpu_time"]  # the machine may be shared; CPU time is steadier
    allocs[name] = b.get("allocs", 0)
print("\n%-40s %10s %10s" % ("benchmark", "ratio", "allocs"))
for name in times:
    group = name.rpartition("/")[0]
    reference = group + ("/snprintf" if name.startswith("format/") else "/nlohmann")
    if reference in times and reference != name:
        print("%-40s %9.2fx %10.0f" % (name, times[name] / times[reference], allocs[name]))
print("(ratio: time relative to nlohmann-json for JSON, to snprintf for formatting; below 1 is faster)")

# The framework's JSON speed as a multiple of each peer's (above 1 is faster than the peer).
print("\n%-40s %10s %10s %10s" % ("JSON speed of zuno / peer", "nlohmann", "rapidjson", "simdjson"))
for name in times:
    if not name.startswith("json/") or "/zuno" not in name:
        continue
    group = name.rpartition("/")[0]
    speeds = ["%9.2fx" % (times[group + "/" + peer] / times[name]) if group + "/" + peer in times else "%10s" % "-"
              for peer in ("nlohmann", "rapidjson", "simdjson")]
    print("%-40s %s %s %s" % (name, *speeds))

# Text conversion: zuno's speed relative to each peer (above 1 is faster), and throughputs.
rates = {}
for b in json.load(open(sys.argv[1]))["benchmarks"]:
    if b.get("run_type") != "aggregate" or b.get("aggregate_name") == "median":
        rates[b.get("run_name", b["name"])] = b.get("bytes_per_second", 0)
print("\n%-50s %10s" % ("text", "speed"))
for name in times:
    if name.startswith("text/utf8-to-wide/") and name.endswith("/zuno"):
        group = name.rpartition("/")[0]
        for peer in ("mbstowcs", "loop"):
            if group + "/" + peer in times:
                print("%-50s %9.2fx" % (name + " vs " + peer, times[group + "/" + peer] / times[name]))
    elif name.startswith("text/") and not name.startswith("text/utf8-to-wide/"):
        print("%-50s %6.0f MB/s" % (name, rates.get(name, 0) / 1e6))

# Waiting for a child that ends at once: wall-clock time above a bare spawn and waitpid.
real = {}
for b in json.load(open(sys.argv[1]))["benchmarks"]:
    if b.get("run_type") != "aggregate" or b.get("aggregate_name") == "median":
        real[b.get("run_name", b["name"]).replace("/real_time", "")] = b["real_time"]
floor = real.get("child/exits-at-once/bare")
if floor:
    print("\n%-50s %10s %12s" % ("child that exits at once (wall clock)", "ratio", "added"))
    for name in real:
        if name.startswith("child/") and name != "child/exits-at-once/bare":
            print("%-50s %9.2fx %9.0f us" % (name, real[name] / floor, real[name] - floor))
PY
