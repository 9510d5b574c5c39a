#!/usr/bin/env bash
# Hands a plain and a hostile mail through the Linux build of mailer to real mail clients
# (Thunderbird, Claws Mail, Evolution), each under its own Xvfb display with a throw-away
# HOME, has each compose window saved as a draft and checks the drafts: recipients,
# subject, body, every attachment's name and bytes. See tests/real-clients/.
#
#     scripts/test-real-clients.sh [CLIENT...]      (default: all three)
#
# Installs what is missing from Debian's packages; builds the mailer target of build/linux
# (or takes $MAILER). One PASS or FAIL line per mail; exit status 1 when any failed.
set -euo pipefail
cd "$(dirname "$0")/.."

clients=("$@")
[ ${#clients[@]} -gt 0 ] || clients=(thunderbird claws-mail evolution)
client_limit=120  # seconds per client; the whole run takes about one minute

packages=(xvfb xdotool x11-utils dbus dbus-x11 python3 thunderbird claws-mail evolution)
sudo_if_needed() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "real clients: installing ${missing[*]}"
  sudo_if_needed apt-get -o DPkg::Lock::Timeout=900 update -qq
  sudo_if_needed env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=900 \
    install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

if [ -z "${MAILER:-}" ]; then
  if [ ! -f build/linux/CMakeCache.txt ]; then
    echo "real clients: configuring the Linux build"
    bash scripts/setup.sh >/dev/null
    cmake -S . -B build/linux -G Ninja -Wno-dev -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  fi
  echo "real clients: building mailer"
  cmake --build build/linux -j "$(nproc)" --target mailer >/dev/null
  MAILER=build/linux/src/mailer/mailer
fi

export PYTHONDONTWRITEBYTECODE=1
failed=()
# First the draft checker itself: it must reject what broken hand-offs produce.
python3 -m unittest discover -q -s tests/real-clients || failed+=("draft checker")
for client in "${clients[@]}"; do
  echo "real clients: $client"
  # The driver stops what it started when its own limit passes; timeout is the backstop.
  timeout -k 15 $((client_limit + 30)) \
    python3 tests/real-clients/run_client.py "$client" "$MAILER" --timeout "$client_limit" \
    || failed+=("$client")
done

if [ ${#failed[@]} -gt 0 ]; then
  echo "real clients FAILED: ${failed[*]} (${SECONDS} s)"
  exit 1
fi
echo "real clients: all passed (${clients[*]}) in ${SECONDS} s"
