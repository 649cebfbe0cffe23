#!/usr/bin/env bash
# What install_test.sh runs in the fresh Debian.
set -eu
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
# Whatever was started here ends with it.
trap 'kill $(jobs -p) 2>/dev/null; pkill -x kelvaron; pkill -x kelvaron-server' EXIT
step() { echo "== $1"; }
fail() {
  echo "FAILED: $1" >&2
  exit 1
}
# await WHAT COMMAND...: until the command succeeds, for a minute at most: the first program with text
# makes the caches of the fonts.
await() {
  local what=$1
  shift
  for _ in $(seq 600); do
    "$@" >/dev/null 2>&1 && return 0
    sleep 0.1
  done
  fail "$what"
}

step "install"
apt-get update -q >/dev/null
apt-get install -y -q --no-install-recommends xvfb xdotool openbox libglib2.0-bin dbus x11-utils \
  python3 procps >/dev/null
find / -xdev \( -path /proc -o -path /tmp -o -path /var/cache -o -path /var/lib/apt \) -prune \
  -o -print | sort >/tmp/before
apt-get install -y -q /tmp/kelvaron*.deb >/tmp/apt.log 2>&1 || { tail /tmp/apt.log; fail "apt"; }
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
Xvfb :77 -screen 0 1280x900x24 >/dev/null 2>&1 &
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
  await "the room does not come up" window "Kelvaron 4.1"
  await "the server has not seen $1" grep -q "$1 (.*) has entered" /tmp/server.log
}
log_in player1
own=/home/player/.local/share/kelvaron
[ "$(stat -c %a:%U "$own")" = 700:player ] || fail "the folder of the user's own: $(stat -c %a:%U "$own")"
[ -d "$own/received" ] || fail "no folder for received files"

step "what is kept outlives a restart"
as_player sh -c "echo kept >$own/profile.dat"
pkill -x kelvaron
await "the client does not end" sh -c '! pgrep -x kelvaron'
: >/tmp/server.log
log_in player2
grep -q kept "$own/profile.dat" || fail "the profile is gone"
pkill -x kelvaron

step "a second player's game by the adapters"
engines=$(dirname "$(dpkg -L kelvaron-engines | grep 'zdoom.exe$')")
for name in zdoom.exe zdoomgl.exe doomsv.exe doomcl.exe; do [ -x "$engines/$name" ] || fail "$name"; done
for name in DOOM.WAD DOOM2.WAD; do [ -r "$engines/$name" ] || fail "$name leads nowhere"; done
as_player env SDL_AUDIODRIVER=dummy timeout 8 "$engines/zdoom.exe" -iwad "$engines/DOOM2.WAD" -warp 01 \
  >/tmp/game.log 2>&1 &
await "no game" sh -c 'grep -q "P_Init" /tmp/game.log'

step "upgrade, removal, purge"
apt-get install -y -q --reinstall /tmp/kelvaron*.deb >/dev/null 2>&1 || fail "upgrade"
[ -f /var/lib/kelvaron-server/moderators ] || fail "an upgrade loses the server's folder"
pkill -x kelvaron-server
apt-get remove -y -q kelvaron kelvaron-server kelvaron-engines >/dev/null 2>&1
[ -f /var/lib/kelvaron-server/moderators ] || fail "a removal loses the server's folder"
apt-get purge -y -q kelvaron kelvaron-server kelvaron-engines >/dev/null 2>&1
[ ! -e /var/lib/kelvaron-server ] || fail "a purge leaves the server's folder"
grep -q kelvaron-server /etc/passwd && echo "left: the user kelvaron-server, as Debian leaves system users"
find / -xdev -iname '*kelvaron*' -not -path '/proc/*' -not -path '/tmp/*' -not -path '/home/player/*'
echo "== done; of the user's own: $(ls "$own")"
