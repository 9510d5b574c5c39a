#!/usr/bin/env bash
# Installs everything the builds and tests need on a Debian machine.
# Idempotent: when all is in place it only checks and returns.
set -euo pipefail

packages=(
  g++ cmake ninja-build make pkg-config
  libgtest-dev googletest libgmock-dev
  libtinyxml-dev
  g++-mingw-w64-x86-64-posix
  wine64
  desktop-file-utils
  dpkg-dev
  libbenchmark-dev nlohmann-json3-dev rapidjson-dev
  libsimdjson-dev libfmt-dev hyperfine time
)

sudo_if_needed() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }
# Waits for other apt runs on the machine instead of failing on their lock.
apt_get() { sudo_if_needed env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=900 "$@"; }
# One line per download and per package set up, on standard error: the last line of
# standard output is this script's answer.
progress() { awk '/^(Get:|Setting up |Unpacking )/ { print "   " $0; fflush() }' >&2; }

# A Wine already on PATH will do; otherwise Debian's wine64 is installed.
source "$(dirname "$0")/wine.sh"
missing=()
for p in "${packages[@]}"; do
  if [ "$p" = wine64 ] && [ -n "$WINE" ] && [ -n "$WINESERVER" ]; then continue; fi
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "== setup: installing ${missing[*]}" >&2
  apt_get update -q | progress
  apt_get install -y -q --no-install-recommends "${missing[@]}" | progress
fi

# The Windows build compiles Debian's own tinyxml source (with its security
# patches) with MinGW, so both builds run the same parser. The source comes
# through a private deb-src list that leaves the system's apt set-up alone: the
# machine's own archives for this release (its `deb` entries, one-line or deb822)
# as deb-src entries.
deb_src_entries() {  # codename
  local codename=$1 file
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ -f "$file" ] || continue
    awk -v codename="$codename" '
      function thisRelease(suite) { return suite == codename || index(suite, codename "-") == 1 }
      $1 == "deb" {
        i = 2; options = ""
        if ($2 ~ /^\[/) {
          for (; i <= NF; i++) { options = options $i " "; if ($i ~ /\]$/) { i++; break } }
        }
        components = ""
        for (j = i + 2; j <= NF && $j !~ /^#/; j++) components = components " " $j
        if (thisRelease($(i + 1))) print "deb-src " options $i " " $(i + 1) components
      }' "$file"
  done
  for file in /etc/apt/sources.list.d/*.sources; do
    [ -f "$file" ] || continue
    awk -v codename="$codename" '
      function thisRelease(suite) { return suite == codename || index(suite, codename "-") == 1 }
      function flush(   uri, suite, nu, ns, i, j, options) {
        if (types ~ /(^|[ \t])deb([ \t]|$)/ && enabled != "no") {
          options = keyring != "" ? "[signed-by=" keyring "] " : ""
          nu = split(uris, uri, " "); ns = split(suites, suite, " ")
          for (i = 1; i <= nu; i++)
            for (j = 1; j <= ns; j++)
              if (thisRelease(suite[j])) print "deb-src " options uri[i] " " suite[j] " " components
        }
        types = uris = suites = components = keyring = enabled = ""
      }
      /^#/ { next }
      /^[ \t]*$/ { flush(); next }
      /^[ \t]/ { next }  # the continuation of a multi-line field (an inline key)
      {
        field = tolower($0); sub(/:.*/, "", field)
        value = $0; sub(/^[^:]*:[ \t]*/, "", value)
        if (field == "types") types = value
        else if (field == "uris") uris = value
        else if (field == "suites") suites = value
        else if (field == "components") components = value
        else if (field == "signed-by" && value ~ /^\//) keyring = value
        else if (field == "enabled") enabled = tolower(value)
      }
      END { flush() }' "$file"
  done
}
deps_dir="${ZUNO_DEPS_DIR:-${XDG_CACHE_HOME:-$HOME/.cache}/zuno}"
tinyxml_dir="$deps_dir/tinyxml"
if [ ! -f "$tinyxml_dir/tinyxmlparser.cpp" ]; then
  apt_dir="$deps_dir/apt"
  mkdir -p "$apt_dir/lists/partial" "$deps_dir/src"
  codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
  deb_src_entries "$codename" > "$apt_dir/sources.list"
  if [ ! -s "$apt_dir/sources.list" ]; then
    echo "setup: no apt source for $codename found to fetch Debian's tinyxml source from" >&2
    exit 1
  fi
  apt_opts=(-o "Dir::Etc::SourceList=$apt_dir/sources.list" -o "Dir::Etc::SourceParts=-"
            -o "Dir::State::Lists=$apt_dir/lists" -o "APT::Sandbox::User=root"
            -o "DPkg::Lock::Timeout=900")
  echo "== setup: fetching Debian's tinyxml source" >&2
  apt-get "${apt_opts[@]}" update -q | progress
  rm -rf "$deps_dir/src"/*
  (cd "$deps_dir/src" && apt-get "${apt_opts[@]}" source -q tinyxml | progress)
  src=$(find "$deps_dir/src" -maxdepth 1 -type d -name 'tinyxml-*' | head -n 1)
  [ -f "$src/tinyxmlparser.cpp" ] || { echo "setup: tinyxml source not found" >&2; exit 1; }
  rm -rf "$tinyxml_dir"
  cp -r "$src" "$tinyxml_dir"
fi
echo "$tinyxml_dir"
