#!/usr/bin/env bash
# Runs the benchmarks on the display at hand; the figures go to docs/performance.md.
set -u
cd "$(dirname "$0")/.." || exit 1
bin=build/release/bin
bench=build/release/bench
session=$(mktemp -d)
trap 'rm -rf "$session"' EXIT
export XDG_RUNTIME_DIR="$session" QT_QPA_PLATFORM=xcb
echo "== the room, from the socket to the screen"
"$bench/room_bench" || exit 1
echo "== the chat view alone"
"$bench/chat_view_bench" || exit 1
echo "== start"
/usr/bin/python3 bench/start_bench.py "$bench/bare_window" || exit 1
/usr/bin/python3 bench/start_bench.py "$bin/kelvaron" || exit 1
echo "== what a stranger sends"
tests/driven/run.sh "$bin" --stranger || exit 1
echo "== sending and receiving files"
"$bench/transfer_bench" || exit 1
echo "== the server"
"$bench/kelvaron_server_load"
