#!/usr/bin/env bash
# Drives the real programs on a virtual display, from outside.
#
#   run.sh BIN-FOLDER [SCENARIO...]           runs the scenarios, all unless named
#   run.sh BIN-FOLDER --pictures FOLDER       makes the pictures of the documents
#
# The client looks for its server on port 3069 of loopback, so everything runs in a network of its
# own where the system allows that.
set -u
here=$(cd "$(dirname "$0")" && pwd)

if [ -z "${KELVARON_DRIVEN_NETWORK:-}" ]; then
  export KELVARON_DRIVEN_NETWORK=own
  up='ip link set lo up && exec "$0" "$@"'
  if unshare --net true 2>/dev/null; then
    exec unshare --net bash -c "$up" "$0" "$@"
  elif unshare --map-root-user --net true 2>/dev/null; then
    exec unshare --map-root-user --net bash -c "$up" "$0" "$@"
  fi
  export KELVARON_DRIVEN_NETWORK=shared
  if (exec 3<>/dev/tcp/127.0.0.1/3069) 2>/dev/null; then
    echo "Port 3069 is taken and this system refuses network namespaces: cannot run." >&2
    exit 1
  fi
fi

. "$here/../../tools/display.sh"
work=$(mktemp -d)
trap 'stop_display; rm -rf "$work"' EXIT
start_display "${KELVARON_DRIVEN_SCREEN:-1280x1024}" || exit 1
export KELVARON_BIN="$1" KELVARON_WORK="$work"
shift
export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 NO_AT_BRIDGE=0
export XDG_RUNTIME_DIR="$work"
chmod 700 "$work"
# The bus of accessibility has to be there before the first program looks for it.
awake='gdbus call --session --dest org.a11y.Bus --object-path /org/a11y/bus \
  --method org.a11y.Bus.GetAddress >/dev/null && exec "$@"'
dbus-run-session -- bash -c "$awake" awake /usr/bin/python3 "$here/scenarios.py" "$@" \
  2> >(grep -v dbus-daemon >&2)
