#!/usr/bin/env bash
# The tool's main job on this machine: builds mailer and hands a sample mailer file to a demo
# mail client, registered as the mailto handler in a throw-away home folder. Shows what the
# client received, the exit code, and that the mailer file is gone.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

echo "== setup: the packages the build needs"
bash scripts/setup.sh >/dev/null
echo "== configure: build/demo"
cmake -S . -B build/demo -G Ninja -Wno-dev -DCMAKE_BUILD_TYPE=Release -DZUNO_BUILD_TESTS=OFF >/dev/null
echo "== build: mailer"
cmake --build build/demo --target mailer
echo "== demo: handing a mailer file to a demo mail client"

demo=$(mktemp -d)
trap 'rm -rf "$demo"' EXIT
export HOME="$demo/home" XDG_DATA_HOME="$demo/home/.local/share" XDG_CONFIG_HOME="$demo/home/.config"
export XDG_DATA_DIRS=/usr/local/share:/usr/share
# xdg-open asks desktop handlers only when it sees a display; the demo client needs none.
export DISPLAY=${DISPLAY:-:0}
mkdir -p "$XDG_DATA_HOME/applications" "$XDG_CONFIG_HOME" "$demo/bin"
cp examples/demo-client/zuno-demo-mail-client "$demo/bin/"
cat > "$XDG_DATA_HOME/applications/zuno-demo-mail-client.desktop" <<ENTRY
[Desktop Entry]
Type=Application
Name=Demo mail client
Exec=zuno-demo-mail-client %u
MimeType=x-scheme-handler/mailto;
ENTRY
export PATH="$demo/bin:$PATH"
xdg-mime default zuno-demo-mail-client.desktop x-scheme-handler/mailto

# The sample mailer file, with its attachment made real.
echo "Figures of the third quarter." > "$demo/report Q3.txt"
sed "s|file:///tmp/report%20Q3.txt|file://${demo// /%20}/report%20Q3.txt|" examples/welcome.xml > "$demo/mail.xml"

echo "\$ mailer $demo/mail.xml"
set +e
"$root/build/demo/src/mailer/mailer" "$demo/mail.xml"
code=$?
set -e
# The demo client runs in its own process; give it a moment to write its report.
for _ in 1 2 3 4 5 6 7 8 9 10; do [ -s "$HOME/received-mail.txt" ] && break; sleep 0.3; done
cat "$HOME/received-mail.txt" 2>/dev/null || echo "(the demo client received nothing)"
echo "exit code: $code (0: the compose window was opened)"
if [ -e "$demo/mail.xml" ]; then echo "the mailer file is still there"; else echo "the mailer file is gone"; fi
