#!/usr/bin/env bash
# What users of an install get: installs a Linux build into a temporary prefix, builds
# examples/library against it with find_package(zuno CONFIG) and with pkg-config and runs
# both, makes the Debian packages and checks their contents and dependencies. Given a
# Windows build too, does the same for Windows (the example cross-built both ways and run
# under Wine) and checks the .zip.
#   scripts/test-install.sh LINUX_BUILD_DIR [WINDOWS_BUILD_DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
linux_build=$(realpath "${1:-build/linux}")
windows_build=${2:+$(realpath "$2")}
source scripts/wine.sh

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
fail() { echo "FAILED: $*" >&2; failures=$((failures + 1)); }

# What the example prints (the JSON pretty-printed, a formatted line, a URI taken apart, a
# filled mail).
expected=$(cat <<'OUT'
{
	"customer": "Ada Lovelace",
	"address": "ada@example.org",
	"items": [
		3,
		4.5
	],
	"invoice": "file:///tmp/invoice%20no%207.pdf"
}
Ada Lovelace ordered 2 items, the last for 4.50
scheme file, file invoice no 7.pdf, path /tmp/invoice no 7.pdf
mail to ada@example.org: Invoice for Ada Lovelace, 1 attachment
OUT
)

check_run() {  # description, command...: runs the example, compares its output
    local description=$1 output; shift
    if ! output=$("$@" | tr -d '\r'); then
        fail "$description: the example failed"
    elif [ "$output" != "$expected" ]; then
        fail "$description: unexpected output"
        diff <(echo "$expected") <(echo "$output") >&2 || true
    else
        echo "   $description: ok"
    fi
}

run_on_windows() {  # description, program (a build failure is reported already)
    [ -f "$2" ] || return 0
    if [ -z "$WINE" ]; then
        echo "   $1: built, not run (no Wine)"
        return 0
    fi
    check_run "$1" env WINEPREFIX="${WINEPREFIX:-$windows_build/wineprefix}" WINEDEBUG=-all \
        WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml=}" "$WINE" "$2"
}

build_example() {  # description, build folder, cmake options...: builds examples/library
    local description=$1 dir=$2; shift 2
    if cmake -S examples/library -B "$dir" -G Ninja "$@" >"$dir.log" 2>&1 \
        && cmake --build "$dir" >>"$dir.log" 2>&1; then
        return 0
    fi
    fail "$description: the example does not build"
    tail -n 15 "$dir.log" >&2
    return 1
}

make_packages() {  # build folder, generator
    (cd "$1" && cpack -G "$2" >"$work/cpack-$2.log" 2>&1) || { fail "cpack -G $2"; tail -n 15 "$work/cpack-$2.log" >&2; }
}

expect_files() {  # description, listing, paths... (extended regular expressions, one per line)
    local description=$1 listing=$2 path; shift 2
    for path in "$@"; do
        grep -Eq -e "$path" <<<"$listing" || fail "$description lacks $path"
    done
}

refuse_files() {  # description, listing, pattern
    if grep -Eq -e "$3" <<<"$2"; then fail "$1 holds $(grep -E -e "$3" <<<"$2" | head -n 3 | tr '\n' ' ')"; fi
}

# --- Linux: the installed tree ---------------------------------------------------------
prefix=$work/linux
echo "== install: $linux_build into a temporary prefix"
cmake --install "$linux_build" --prefix "$prefix" >/dev/null
installed=$(cd "$prefix" && find . -type f -o -type l | sort)
expect_files "the installed tree" "$installed" \
    '^\./bin/mailer$' '^\./bin/zuno-json$' '^\./include/zuno/CString\.h$' '^\./include/zuno/P\.h$' \
    '/libzuno\.a$' '/libzuno\.so$' '/cmake/zuno/zunoConfig\.cmake$' '/cmake/zuno/FindTinyXML\.cmake$' \
    '/pkgconfig/zuno\.pc$' '/man1/mailer\.1$' '/man1/zuno-json\.1$' '/doc/zuno/LICENSE$'
# Only public headers: the framework's platform headers stay inside the build.
refuse_files "the installed tree" "$installed" '^\./include/zuno/.+/|^\./include/[^z]'
for header in $(find src/zuno -name '*.h' -printf '%f\n'); do
    refuse_files "the installed tree" "$installed" "^\./include/zuno/${header//./\\.}\$"
done
pc_dir=$(dirname "$(find "$prefix" -name zuno.pc | head -n 1)")
lib_dir=$(dirname "$pc_dir")
# The static library carries its link dependencies to the programs that use it, TinyXML
# among them, whether or not today's example calls into it.
expect_files "the CMake package's zuno::zuno" \
    "$(grep -A3 'set_target_properties(zuno::zuno PROPERTIES' "$lib_dir"/cmake/zuno/zunoTargets.cmake)" \
    'INTERFACE_LINK_LIBRARIES.*TinyXML::TinyXML' 'INTERFACE_LINK_LIBRARIES.*Threads::Threads'
expect_files "pkg-config --static --libs zuno" "$(PKG_CONFIG_PATH="$pc_dir" pkg-config --static --libs zuno)" \
    '-lzuno' '-ltinyxml' '-pthread'

echo "== example: find_package(zuno CONFIG) against the installed tree"
build_example "find_package" "$work/example-cmake" -DCMAKE_PREFIX_PATH="$prefix" \
    && check_run "find_package, static library" "$work/example-cmake/zuno-example"

echo "== example: pkg-config against the installed tree"
cp -r examples/library "$work/example-pkg-config"
if PKG_CONFIG_PATH="$pc_dir" make -s -C "$work/example-pkg-config" >"$work/example-pkg-config.log" 2>&1; then
    # pkg-config links the shared library, found here through LD_LIBRARY_PATH.
    readelf -d "$work/example-pkg-config/zuno-example" | grep -q 'NEEDED.*libzuno\.so' \
        || fail "the pkg-config build did not link libzuno.so"
    check_run "pkg-config, shared library" env LD_LIBRARY_PATH="$lib_dir" "$work/example-pkg-config/zuno-example"
else
    fail "pkg-config: the example does not build"
    tail -n 15 "$work/example-pkg-config.log" >&2
fi

# --- Linux: Debian packages ------------------------------------------------------------
echo "== package: .deb"
rm -rf "$linux_build/packages"
make_packages "$linux_build" DEB
deb() { ls "$linux_build"/packages/"$1"_*.deb 2>/dev/null | head -n 1; }
for package in mailer libzuno0 libzuno-dev; do
    [ -n "$(deb $package)" ] || fail "no $package package"
done
if [ -n "$(deb mailer)" ] && [ -n "$(deb libzuno0)" ] && [ -n "$(deb libzuno-dev)" ]; then
    expect_files "mailer.deb" "$(dpkg-deb -c "$(deb mailer)")" \
        ' \./usr/bin/mailer$' ' \./usr/bin/zuno-json$' '/man1/mailer\.1' '/man1/zuno-json\.1'
    refuse_files "mailer.deb" "$(dpkg-deb -c "$(deb mailer)")" '/include/|\.a$|\.so'
    # Every shared library the programs need is a declared dependency.
    needed=$(readelf -d "$linux_build/src/mailer/mailer" "$linux_build/src/tools/zuno-json/zuno-json" | grep NEEDED)
    depends=$(dpkg-deb -f "$(deb mailer)" Depends)
    for library_package in 'libtinyxml:libtinyxml' 'libstdc\+\+:libstdc\+\+6' 'libc\.so:libc6'; do
        if grep -Eq -e "\[${library_package%%:*}" <<<"$needed"; then
            expect_files "mailer.deb's dependencies" "$depends" "${library_package#*:}"
        fi
    done
    expect_files "libzuno0.deb" "$(dpkg-deb -c "$(deb libzuno0)")" '/libzuno\.so\.0'
    expect_files "libzuno-dev.deb" "$(dpkg-deb -c "$(deb libzuno-dev)")" \
        '/usr/include/zuno/CString\.h$' '/libzuno\.a$' '/libzuno\.so ' '/cmake/zuno/zunoConfig\.cmake$' \
        '/pkgconfig/zuno\.pc$'
    expect_files "libzuno-dev.deb's dependencies" "$(dpkg-deb -f "$(deb libzuno-dev)" Depends)" \
        'libtinyxml-dev' 'libzuno0 \(= '

    # The packages' tree, unpacked elsewhere, serves a build as well as the installed one.
    for package in libzuno0 libzuno-dev; do dpkg-deb -x "$(deb $package)" "$work/deb-root"; done
    build_example "find_package in the unpacked packages" "$work/example-deb" \
        -DCMAKE_PREFIX_PATH="$work/deb-root/usr" \
        && check_run "find_package, unpacked .deb" "$work/example-deb/zuno-example"
fi

# --- Windows ---------------------------------------------------------------------------
if [ -n "$windows_build" ]; then
    prefix=$work/windows
    echo "== install: $windows_build into a temporary prefix"
    cmake --install "$windows_build" --prefix "$prefix" >/dev/null
    echo "== example: find_package(zuno CONFIG) against the installed Windows tree"
    build_example "find_package for Windows" "$work/example-windows" \
        -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" -DCMAKE_PREFIX_PATH="$prefix" \
        -DCMAKE_EXE_LINKER_FLAGS=-static || true
    echo "== example: pkg-config against the installed Windows tree"
    cp -r examples/library "$work/example-windows-pkg-config"
    if ! PKG_CONFIG_PATH="$prefix/lib/pkgconfig" make -s -C "$work/example-windows-pkg-config" \
        CXX=x86_64-w64-mingw32-g++-posix LDFLAGS=-static >"$work/example-windows-pkg-config.log" 2>&1; then
        fail "pkg-config for Windows: the example does not build"
        tail -n 15 "$work/example-windows-pkg-config.log" >&2
    fi
    run_on_windows "find_package, Windows under Wine" "$work/example-windows/zuno-example.exe"
    run_on_windows "pkg-config, Windows under Wine" "$work/example-windows-pkg-config/zuno-example.exe"

    echo "== package: .zip"
    rm -rf "$windows_build/packages"
    make_packages "$windows_build" ZIP
    zip=$(ls "$windows_build"/packages/*.zip 2>/dev/null | head -n 1)
    if [ -z "$zip" ]; then
        fail "no .zip package"
    else
        listing=$(cmake -E tar tf "$zip")
        expect_files "the .zip" "$listing" '/bin/mailer\.exe$' '/bin/zuno-json\.exe$' \
            '/doc/README\.md$' '/doc/LICENSE$' '/doc/mailer-file\.md$' '/doc/zuno-json\.md$'
        # The programs only: no library files, no test doubles.
        refuse_files "the .zip" "$listing" '/include/|\.a$|\.dll$|/lib/'
    fi
fi

if [ "$failures" -gt 0 ]; then
    echo "install test: $failures failure(s)" >&2
    exit 1
fi
echo "install test: all passed"
