#!/usr/bin/env bash
# Drives the real programs on a virtual display, from outside.
#
#   run.sh BIN-FOLDER [SCENARIO...]           runs the scenarios, all unless named
#   run.sh BIN-FOLDER --stranger              measures what a stranger's lines cost
#   run.sh BIN-FOLDER --pictures FOLDER [PART...]
#                                             makes the pictures of the documents, all or only
#                                             parts: room, match, server, exchange, windows
#
# The client looks for its server on port 3069 of loopback, so everything runs in a network of its
# own where the system allows that. A scenario that fails leaves the screen in KELVARON_FAILURES,
# the system's temporary folder unless told.
set -u
here=$(cd "$(dirname "$0")" && pwd)
if [ $# -lt 1 ] || [ ! -x "$1/kelvaron" ] || [ ! -x "$1/kelvaron-server" ]; then
  sed -n '4,8p' "$0"
  echo "BIN-FOLDER holds kelvaron and kelvaron-server." >&2
  exit 2
fi

if [ -z "${KELVARON_DRIVEN_NETWORK:-}" ]; then
  export KELVARON_DRIVEN_NETWORK=own
  for user in "" --map-root-user; do
    own=(unshare $user --net)
    "${own[@]}" ip link set lo up 2>/dev/null || continue
    exec "${own[@]}" bash -c 'ip link set lo up && . "$0"' "$0" "$@"
  done
  export KELVARON_DRIVEN_NETWORK=shared
  if (exec 3<>/dev/tcp/127.0.0.1/3069) 2>/dev/null; then
    echo "Port 3069 is taken and this system refuses network namespaces: cannot run." >&2
    exit 1
  fi
fi

. "$here/../../tools/display.sh"
work=$(mktemp -d)
session=
finish() {
  [ -n "$session" ] && kill -- "-$session" 2>/dev/null && wait "$session"
  stop_display
  rm -rf "$work"
}
trap finish EXIT
trap 'exit 130' INT TERM
screen=1280x1024
[ "${2:-}" = --pictures ] && screen=1600x1200
start_display "${KELVARON_DRIVEN_SCREEN:-$screen}" || exit 1
export KELVARON_BIN="$1" KELVARON_WORK="$work"
export KELVARON_FAILURES="${KELVARON_FAILURES:-${TMPDIR:-/tmp}}"
shift
export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 NO_AT_BRIDGE=0
export XDG_RUNTIME_DIR="$work" PYTHONDONTWRITEBYTECODE=1
chmod 700 "$work"
# The bus of accessibility has to be there before the first program looks for it.
awake='gdbus call --session --dest org.a11y.Bus --object-path /org/a11y/bus \
  --method org.a11y.Bus.GetAddress >/dev/null && exec "$@"'
noise=(-e dbus-daemon -e 'SpiRegistry daemon' -e 'X connection to')
# A process group of its own, so that all of it can be ended together.
setsid dbus-run-session -- bash -c "$awake" awake /usr/bin/python3 "$here/main.py" "$@" \
  > >(grep --line-buffered -v "${noise[@]}") 2> >(grep --line-buffered -v "${noise[@]}" >&2) &
session=$!
wait "$session"
result=$?
session=
exit "$result"
