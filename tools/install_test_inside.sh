#!/usr/bin/env bash
# What install_test.sh runs in the fresh Debian.
set -eu
# It ends programs by name, so there must be none but its own; they end with it, their first process.
[ $$ -eq 1 ] || { echo "to be started by install_test.sh" >&2; exit 2; }
# The first program with text makes the caches of the fonts.
patience=120
evidence() { xwininfo -display :77 -root -tree 2>/dev/null | grep -o '"[^"]*": ("kelvaron"'; }
. "$(dirname "$0")/test_inside.sh"

step "install"
apt-get update -q >/dev/null
apt-get install -y -q --no-install-recommends xvfb xdotool openbox libglib2.0-bin dbus x11-utils \
  python3 procps >/dev/null
apt-get install -y -q /tmp/kelvaron*.deb >/tmp/apt.log 2>&1 || { tail /tmp/apt.log; fail "apt"; }
version=$(dpkg-query -W -f '${Version}' kelvaron)
room="Kelvaron ${version%-*}"
id player >/dev/null 2>&1 || useradd -m player
getent passwd kelvaron-server || fail "the service has no user"
as_player() { runuser -u player -- env HOME=/home/player DISPLAY=:77 XDG_RUNTIME_DIR=/tmp/run "$@"; }
mkdir -p /tmp/run && chown player /tmp/run && chmod 700 /tmp/run

step "the server, as its service starts it"
install -d -o kelvaron-server -g kelvaron-server -m 700 /var/lib/kelvaron-server
echo "right word" | kelvaron-server --folder /var/lib/kelvaron-server --add-moderator ann ann@example.org
runuser -u kelvaron-server -- kelvaron-server --address :: --folder /var/lib/kelvaron-server \
  >/tmp/server.out 2>/tmp/server.log &
await "the server does not listen" grep -q listens /tmp/server.out
kelvaron-server --folder /var/lib/kelvaron-server --check

step "the client, from its desktop entry"
Xvfb :77 -screen 0 1280x900x24 -noreset >/dev/null 2>&1 &
await "no display" as_player xwininfo -root
as_player openbox >/dev/null 2>&1 &
window() { as_player xdotool search --onlyvisible --name "$1"; }
log_in() {
  as_player dbus-run-session -- sh -c \
    'gio launch /usr/share/applications/kelvaron.desktop; sleep 3; while pgrep -x kelvaron >/dev/null; do sleep 0.2; done' \
    >/tmp/client.log 2>&1 &
  await "no login window" window "Kelvaron Login"
  sleep 1
  as_player xdotool search --onlyvisible --name "Kelvaron Login" windowactivate --sync type --delay 30 "$1"
  as_player xdotool key Return
  await "the room does not come up" window "$room"
  await "the server has not seen $1" grep -q "$1 (.*) has entered" /tmp/server.log
}
log_in player1
own=/home/player/.local/share/kelvaron
[ "$(stat -c %a:%U "$own")" = 700:player ] || fail "the folder of the user's own: $(stat -c %a:%U "$own")"
[ -d "$own/received" ] || fail "no folder for received files"

press() {
  as_player xdotool key --delay 60 "$@"
  sleep 0.4
}
types() {
  as_player xdotool type --delay 40 "$1"
  sleep 0.4
}
# The menus by keyboard: how often down, and what opens.
menu() {
  as_player xdotool search --onlyvisible --name "$room" windowactivate --sync
  sleep 0.5
  press alt
  press "${@:2}"
  await "no window $1" window "$1"
  sleep 0.5
}
engines=$(dirname "$(dpkg -L kelvaron-engines | grep 'zdoom.exe$')")

step "a file arrives"
press Escape
menu "Kelvaron File Server" Down Down Down Return
python3 -c "
import socket
with socket.create_connection(('127.0.0.1', 5050)) as line:
    line.sendall(b'FILEINFO|5|gift.txt|hello')"
await "no file" grep -q hello "$own/received/gift.txt"
press Escape

step "the first game is one press: Configure Games offers what the packages have brought"
menu '^Kelvaron$' Down Down Down Down Right Return
press Return
await "no configuration" grep -qF "$engines/zdoom.exe" "$own/kvconfig.cfg"
for each in "$engines/doomsv.exe" "$engines/doomcl.exe" freedoom1.wad freedoom2.wad; do
  grep -qF "$each" "$own/kvconfig.cfg" || fail "$each is not configured"
done
[ -f "$engines/doomsday_start.so" ] || fail "what Doomsday loads is not there"

step "a profile"
menu "rofile" Down Down Down Down Right Down Return
types Player
press Return
for _ in $(seq 20); do
  [ -f "$own/profile.dat" ] && break
  press Tab
  press Return
done
[ -f "$own/profile.dat" ] || fail "no profile"
press Escape

step "what is kept outlives a restart"
sum() { sha256sum "$own/kvconfig.cfg" "$own/profile.dat" "$own/received/gift.txt"; }
kept=$(sum)
pkill -x kelvaron || true
await "the client does not end" sh -c '! pgrep -x kelvaron'
: >/tmp/server.log
log_in player2
[ "$kept" = "$(sum)" ] || fail "something is lost"
pkill -x kelvaron || true

step "the game starts by what was located"
as_player env SDL_AUDIODRIVER=dummy timeout 8 "$engines/zdoom.exe" -iwad "$engines/DOOM.WAD" -warp 11 \
  >/tmp/game.log 2>&1 &
await "no game" grep -q P_Init /tmp/game.log

step "upgrade, removal, purge"
for package in /tmp/kelvaron*.deb; do
  next_version "$package" "/tmp/next_$(basename "$package")"
done
apt-get install -y -q /tmp/next_*.deb >/tmp/apt.log 2>&1 || { tail /tmp/apt.log; fail "upgrade"; }
rm /tmp/next_*.deb
dpkg-query -W -f '${Version} ${Status}\n' kelvaron | grep -q '+next install ok' || fail "no upgrade"
[ -f /var/lib/kelvaron-server/moderators ] || fail "an upgrade loses the server's folder"
pkill -x kelvaron-server || true
apt-get remove -y -q kelvaron kelvaron-server kelvaron-engines >/dev/null 2>&1
[ -f /var/lib/kelvaron-server/moderators ] || fail "a removal loses the server's folder"
# The other two leave nothing that a purge could take away.
dpkg --purge kelvaron-server >/dev/null 2>&1
[ ! -e /var/lib/kelvaron-server ] || fail "a purge leaves the server's folder"
if grep -q kelvaron-server /etc/passwd; then echo "left: the user kelvaron-server, as Debian leaves system users"; fi
find / -xdev -iname '*kelvaron*' -not -path '/proc/*' -not -path '/tmp/*' -not -path '/home/player/*'
echo "== done; of the user's own: $(ls "$own")"
