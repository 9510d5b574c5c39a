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
  xdg-utils desktop-file-utils
  dpkg-dev
  libbenchmark-dev nlohmann-json3-dev rapidjson-dev
  libfmt-dev hyperfine time
)

sudo_if_needed() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "setup: installing ${missing[*]}"
  sudo_if_needed apt-get update -qq
  sudo_if_needed env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

# The Windows build compiles Debian's own tinyxml source (with its security
# patches) with MinGW, so both builds run the same parser. The source comes
# through a private deb-src list that leaves the system's apt set-up alone.
deps_dir="${ZUNO_DEPS_DIR:-${XDG_CACHE_HOME:-$HOME/.cache}/zuno}"
tinyxml_dir="$deps_dir/tinyxml"
if [ ! -f "$tinyxml_dir/tinyxmlparser.cpp" ]; then
  apt_dir="$deps_dir/apt"
  mkdir -p "$apt_dir/lists/partial" "$deps_dir/src"
  codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
  cat > "$apt_dir/sources.list" <<LIST
deb-src http://deb.debian.org/debian $codename main
deb-src http://deb.debian.org/debian-security $codename-security main
LIST
  apt_opts=(-o "Dir::Etc::SourceList=$apt_dir/sources.list" -o "Dir::Etc::SourceParts=-"
            -o "Dir::State::Lists=$apt_dir/lists" -o "APT::Sandbox::User=root")
  echo "setup: fetching Debian's tinyxml source"
  apt-get "${apt_opts[@]}" update -qq
  rm -rf "$deps_dir/src"/*
  (cd "$deps_dir/src" && apt-get "${apt_opts[@]}" source -qq tinyxml >/dev/null)
  src=$(find "$deps_dir/src" -maxdepth 1 -type d -name 'tinyxml-*' | head -n 1)
  [ -f "$src/tinyxmlparser.cpp" ] || { echo "setup: tinyxml source not found" >&2; exit 1; }
  rm -rf "$tinyxml_dir"
  cp -r "$src" "$tinyxml_dir"
fi
echo "$tinyxml_dir"
