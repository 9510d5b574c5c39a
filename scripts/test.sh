#!/usr/bin/env bash
# Installs what is missing, builds the three configurations (Linux, Linux with
# AddressSanitizer and UndefinedBehaviorSanitizer, Windows cross-compiled with MinGW-w64)
# and runs every test: natively, under the sanitizers and under Wine; then tests the install
# and the packages (scripts/test-install.sh).
set -euo pipefail
cd "$(dirname "$0")/.."

echo "== setup: the packages the builds need"
tinyxml_dir=$(bash scripts/setup.sh | tail -n 1)
source scripts/wine.sh
jobs=$(nproc)
failed=()

build() {  # name, cmake options...
    local name=$1; shift
    echo "== configure: $name"
    cmake -S . -B "build/$name" -G Ninja -Wno-dev "$@" >/dev/null
    echo "== build: $name"
    cmake --build "build/$name" -j "$jobs"
}

run_tests() {  # name
    echo "== test: $1"
    ctest --test-dir "build/$1" --output-on-failure -j "$jobs" || failed+=("$1")
}

# The Linux build compiles the benchmarks too, so they keep building; bench scripts run them.
build linux -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZUNO_BUILD_BENCHMARKS=ON
run_tests linux

build sanitize -DCMAKE_BUILD_TYPE=Debug -DZUNO_SANITIZE=ON
ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1 UBSAN_OPTIONS=print_stacktrace=1 run_tests sanitize

build windows -DCMAKE_BUILD_TYPE=Release -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake \
    -DZUNO_TINYXML_SOURCE_DIR="$tinyxml_dir"
# One wineserver for the whole run: a cold Wine start costs seconds, a warm one little.
export WINEPREFIX="$PWD/build/windows/wineprefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
trap '"$WINESERVER" -k 2>/dev/null || true' EXIT
echo "== wine: preparing the prefix"
"$WINE" wineboot --init >/dev/null 2>&1 || true
"$WINESERVER" -p 2>/dev/null || true  # (one may be running already)
run_tests windows

# The installed library and the packages: the example builds and runs against the installed
# tree (find_package and pkg-config), the .deb and the Windows .zip hold what they should.
echo "== test: install and packages"
bash scripts/test-install.sh build/linux build/windows || failed+=(install)
"$WINESERVER" -k 2>/dev/null || true

if [ ${#failed[@]} -gt 0 ]; then
    echo "FAILED: ${failed[*]}"
    exit 1
fi
echo "All tests passed: Linux, sanitizers, Windows under Wine, install and packages."
