#!/usr/bin/env bash
# Benchmarks the mailer as a whole process on a typical mailer file and on large ones
# (up to 10,000 recipients, a 1 MiB note and 1,000 attachments, in steps of a quarter, a
# half and the whole), to show how the cost grows. Windows build under Wine, handing off to
# the recording MAPI32.DLL of the tests; Linux build with no mail client, which measures the
# tool's own work (reading, parsing, converting, checking the attachments).
# Then, on Linux, the tool against a bare C++ main as whole processes (hyperfine) and its
# peak memory (/usr/bin/time).
# Usage: bash scripts/bench-mailer.sh [runs]   (builds what it needs first)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
runs=${1:-10}

tinyxml_dir=$(bash scripts/setup.sh | tail -n 1)
source scripts/wine.sh
cmake -S . -B build/bench-linux -G Ninja -Wno-dev -DCMAKE_BUILD_TYPE=Release -DZUNO_BUILD_TESTS=OFF >/dev/null
cmake --build build/bench-linux --target mailer >/dev/null
cmake -S . -B build/windows -G Ninja -Wno-dev -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake -DZUNO_TINYXML_SOURCE_DIR="$tinyxml_dir" >/dev/null
cmake --build build/windows --target mailer recording_mapi32 >/dev/null

work=$(mktemp -d)
export WINEPREFIX="$root/build/windows/wineprefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=;mapi32=n"
trap '"$WINESERVER" -k 2>/dev/null || true; rm -rf "$work"' EXIT
mkdir -p "$work/win" "$work/files" "$work/home"
cp build/windows/src/mailer/mailer.exe build/windows/tests/mailer/win32/recording_mapi32/mapi32.dll "$work/win/"
export ZUNO_TEST_MAPI_RECORD="Z:$work/record.txt" ZUNO_TEST_MAPI_RESULT=0

for i in $(seq 1 1000); do echo "attachment $i" > "$work/files/file $i.txt"; done

# mailer file with N recipients, a note of B bytes and A attachments
make_file() {
    local recipients=$1 note_bytes=$2 attachments=$3 out=$4 i
    {
        echo '<?xml version="1.0" encoding="UTF-8"?>'
        echo "<mailerfile><subject>Benchmark mail with some text</subject><note>"
        head -c "$note_bytes" /dev/zero | tr '\0' 'x' | fold -w 72
        echo "</note><torecipients>"
        for ((i = 1; i <= recipients; i++)); do echo "<recipient>person$i@example.org</recipient>"; done
        echo "</torecipients><attachments>"
        for ((i = 1; i <= attachments; i++)); do echo "<attachment>file://${work// /%20}/files/file%20$i.txt</attachment>"; done
        echo "</attachments></mailerfile>"
    } > "$out"
}

# average wall-clock milliseconds of one run
measure() {
    local template=$1; shift
    local total=0 start end i
    for ((i = 0; i < runs; i++)); do
        cp "$template" "$work/mail.xml"
        start=$(date +%s%N)
        "$@" "$work/mail.xml" >/dev/null 2>&1 || true
        end=$(date +%s%N)
        total=$((total + end - start))
    done
    echo $((total / runs / 1000000))
}

"$WINESERVER" -p
"$WINE" "$work/win/mailer.exe" >/dev/null 2>&1 || true  # warm Wine up

printf '| mailer file | size | Windows build under Wine, ms | Linux build, ms |\n|---|---|---|---|\n'
while read -r name recipients note attachments; do
    make_file "$recipients" "$note" "$attachments" "$work/$name.xml"
    size=$(du -k "$work/$name.xml" | cut -f1)
    win=$(measure "$work/$name.xml" "$WINE" "$work/win/mailer.exe")
    linux=$(measure "$work/$name.xml" env HOME="$work/home" XDG_DATA_HOME="$work/home" \
            XDG_CONFIG_HOME="$work/home" PATH=/nonexistent "$root/build/bench-linux/src/mailer/mailer")
    printf '| %s: %s recipients, %s bytes of note, %s attachments | %s KiB | %s | %s |\n' \
        "$name" "$recipients" "$note" "$attachments" "$size" "$win" "$linux"
done <<'SIZES'
typical 3 2000 2
quarter 2500 262144 250
half 5000 524288 500
large 10000 1048576 1000
SIZES

# The Linux tool as a whole process against a bare C++ program (the same compiler, a
# std::string and nothing else) on the typical file, side by side in one hyperfine run; and
# its peak resident memory on the largest file, above that on the typical one.
bare="$work/bare"
printf '#include <string>\nint main(int argc, char** argv) { std::string name(argv[0]); return argc > 9 && name.empty(); }\n' > "$bare.cpp"
c++ -O2 "$bare.cpp" -o "$bare"
tool="$root/build/bench-linux/src/mailer/mailer"
quiet_env=(env HOME="$work/home" XDG_DATA_HOME="$work/home" XDG_CONFIG_HOME="$work/home" PATH=/nonexistent)
"${quiet_env[@]}" "$(command -v hyperfine)" -N -i --warmup 20 --runs 300 --style none \
    --prepare "$(command -v cp) $work/typical.xml $work/mail.xml" --export-json "$work/start.json" \
    "$tool $work/mail.xml" "$bare $work/mail.xml" >/dev/null
peak_kib() {
    cp "$1" "$work/mail.xml"
    "${quiet_env[@]}" /usr/bin/time -f %M "$tool" "$work/mail.xml" 2>&1 >/dev/null | tail -n 1
}
python3 - "$work/start.json" "$(peak_kib "$work/typical.xml")" "$(peak_kib "$work/large.xml")" \
    "$(stat -c %s "$work/large.xml")" <<'PY'
import json, sys
tool, bare = json.load(open(sys.argv[1]))["results"]
print("\nLinux mailer, typical file, as a process: %.2f ms (user+sys %.2f ms); bare C++ main %.2f ms (%.2f ms)"
      % (tool["median"] * 1e3, (tool["user"] + tool["system"]) * 1e3, bare["median"] * 1e3, (bare["user"] + bare["system"]) * 1e3))
print("ratio: %.2fx wall (median), %.2fx CPU" % (tool["median"] / bare["median"], (tool["user"] + tool["system"]) / (bare["user"] + bare["system"])))
base, large, size = int(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4]) / 1024
print("peak resident: %d KiB on the typical file, %d KiB on the %.0f KiB one: %.1fx the file above the base"
      % (base, large, size, (large - base) / size))
PY
