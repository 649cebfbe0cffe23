#!/usr/bin/env bash
# The real game through the adapters, on a virtual display: one player alone, then a server that
# stays and its players. A host and a guest play in the driven suite.
#
#   real_game.sh ENGINES-FOLDER
#
# Exit code 77 where the game is missing.
set -u
here=$(cd "$(dirname "$0")" && pwd)
PATH=$PATH:/usr/games

skip() {
  echo "Skipped: $1"
  exit 77
}
fail() {
  echo "$1"
  exit 1
}
for program in chocolate-doom chocolate-server Xvfb openbox xprop xdotool; do
  command -v "$program" >/dev/null || skip "$program is not installed"
done
[ -r /usr/share/games/doom/freedoom2.wad ] ||
  skip "the game data of the package freedoom are not installed"

# The game's port belongs to one host only: a network of its own where the system allows that.
if [ -z "${KELVARON_GAME_NETWORK:-}" ]; then
  export KELVARON_GAME_NETWORK=own
  for user in "" --map-root-user; do
    own=(unshare $user --net)
    "${own[@]}" ip link set lo up 2>/dev/null || continue
    exec "${own[@]}" bash -c 'ip link set lo up && . "$0"' "$0" "$@"
  done
fi

. "$here/../../tools/display.sh"
work=$(mktemp -d)
pids=()
end_games() {
  for pid in "${pids[@]}"; do kill "$pid" && wait "$pid"; done 2>/dev/null
  pids=()
}
finish() {
  end_games
  stop_display
  rm -rf "$work"
}
trap finish EXIT
trap 'exit 130' INT TERM
start_display 800x600 || exit 1
export SDL_AUDIODRIVER=dummy HOME=$work XDG_DATA_HOME=$work XDG_CONFIG_HOME=$work
# A copy of the programs runs from anywhere.
cp -r "$1" "$work/my engines" || exit 1
"$here/../../engines/link_game_data.sh" "$work/my wads" >/dev/null || exit 1

# start NAME PROGRAM WORD...: what it prints goes to the file NAME.
start() {
  local name=$1 program=$2
  shift 2
  stdbuf -oL "$work/my engines/$program" "$@" >"$work/$name" 2>&1 </dev/null &
  pids+=($!)
}
# seen NAME TEXT SECONDS: waits for a line of NAME.
seen() {
  for _ in $(seq "$(($3 * 10))"); do
    grep -qae "$2" "$work/$1" && return 0
    sleep 0.1
  done
  fail "The $1 didn't say \"$2\" within $3 seconds, but: $(tail -n 15 "$work/$1")"
}
all_run() {
  for pid in "${pids[@]}"; do kill -0 "$pid" 2>/dev/null || fail "A game ended by itself"; done
}

start single zdoom.exe -iwad "$work/my wads/DOOM.WAD" -nosfx -nomusic -warp 23 -host 1
seen single "player 1 of 1" 40
seen single "startmap: 3  startepisode: 2" 5
all_run
echo "One plays: $(grep -a 'player 1 of' "$work/single")"
end_games

start server doomsv.exe
for player in first second; do start "$player" doomcl.exe -connect 127.0.0.1; done
for _ in $(seq 40); do
  timeout 15 chocolate-doom -nogui -query 127.0.0.1 >"$work/query" 2>&1 </dev/null
  grep -qa ' 2/[48]' "$work/query" && break
  sleep 0.2
done
grep -qa ' 2/[48]' "$work/query" ||
  fail "The server's players didn't come: $(tail -n 5 "$work"/{query,server,first,second})"
echo "The server has both: $(grep -a ' 2/[48]' "$work/query")"
# Whoever came first starts the game in the waiting window, which the other lacks.
for _ in $(seq 20); do
  for window in $(xdotool search --onlyvisible --class chocolate); do
    xdotool windowfocus --sync "$window" key space
  done
  grep -qae 'player . of 2' "$work/first" && break
  sleep 0.5
done
for player in first second; do seen "$player" "player [12] of 2" 10; done
all_run
echo "Both play on it: $(grep -ha 'player . of' "$work/first" "$work/second" | sort | paste -sd/)"
