#!/usr/bin/env bash
# Builds the libFuzzer targets (clang, AddressSanitizer, UndefinedBehaviorSanitizer) and runs
# each for the given number of seconds, one after the other (default 15).
#   scripts/fuzz.sh [seconds] [target...]
# New inputs go to build/fuzz/corpus/<target>; the seeds in fuzz/<target>/corpus stay as they
# are. A finding stops the run and leaves its input in build/fuzz/findings/.
# FUZZ_OPTIONS adds libFuzzer options (for a long campaign: FUZZ_OPTIONS=-runs=10000000).
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-15}
shift || true
tinyxml_dir=$(bash scripts/setup.sh | tail -n 1)
# clang and its runtime libraries (libFuzzer and the sanitizers), from Debian.
missing=()
for p in clang libclang-rt-dev; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "fuzz: installing ${missing[*]}"
    sudo_cmd=(); [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
    "${sudo_cmd[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

build=build/fuzz
CC=clang CXX=clang++ cmake -S . -B "$build" -G Ninja -Wno-dev -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DZUNO_FUZZ=ON -DZUNO_BUILD_TESTS=OFF -DZUNO_TINYXML_SOURCE_DIR="$tinyxml_dir" >/dev/null
cmake --build "$build" -j "$(nproc)" --target fuzz_targets

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
    for dir in fuzz/*/; do
        name=$(basename "$dir")
        [ -f "$dir/$name.cpp" ] && targets+=("$name")
    done
fi

# Inputs are capped at 4 KiB: the parsers' behaviour on long texts belongs to the benchmarks.
export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=0 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
failed=()
for name in "${targets[@]}"; do
    echo "== fuzz: $name (${seconds}s)"
    mkdir -p "$build/corpus/$name" "$build/findings/$name"
    # shellcheck disable=SC2086
    "$build/fuzz/$name" -max_total_time="$seconds" -max_len=4096 -timeout=10 -rss_limit_mb=2048 \
        -malloc_limit_mb=512 -print_final_stats=1 -artifact_prefix="$build/findings/$name/" ${FUZZ_OPTIONS:-} \
        "$build/corpus/$name" "fuzz/$name/corpus" 2>"$build/$name.log" || failed+=("$name")
    grep -E '^(stat::|#[0-9]+ *DONE)|ERROR|SUMMARY' "$build/$name.log" | tail -n 12 || true
done
if [ ${#failed[@]} -gt 0 ]; then
    echo "FUZZ FINDINGS: ${failed[*]} (inputs in $build/findings/, logs in $build/*.log)"
    exit 1
fi
echo "All fuzz targets ran clean."
