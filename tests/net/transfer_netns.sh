#!/usr/bin/env bash
# transfer_netns.sh FOLDER-OF-PROGRAMS: transfers between two machines of their own network, over a
# cable that is slow and loses frames: a whole one, one whose cable is cut in the middle, one whose
# receiver stands still for 40 seconds. Ends with 77 where the system makes no such network.
set -u
here=$(cd "$(dirname "$0")" && pwd)
program=$1/transfer_program
skip() {
  echo "skipped: $1"
  exit 77
}
[ "$(id -u)" = 0 ] || skip "making networks is for the administrator"
command -v ip >/dev/null || skip "the program ip is missing"
[ -c /dev/net/tun ] || skip "this system makes no network devices"

work=$(mktemp -d)
id=$((BASHPID % 100000))
spaces=()
started=()
cleanup() {
  for process in "${started[@]}"; do
    kill -KILL "$process" 2>/dev/null
    wait "$process" 2>/dev/null
  done
  for space in "${spaces[@]}"; do ip netns del "$space"; done
  cat "$work"/*.folder 2>/dev/null | while read -r folder; do
    case $folder in */kelvaron-*) rm -rf "$folder" ;; esac
  done
  rm -rf "$work"
}
trap cleanup EXIT

# network NAME: the namespaces NAME-a and NAME-b, joined by a cable. Sets `link` to its process.
network() {
  local a=kv$id$1-a b=kv$id$1-b
  ip netns add "$a" 2>"$work/why" || skip "no network namespaces: $(cat "$work/why")"
  spaces+=("$a")
  # In a changed root the system lets one make them but not enter them.
  ip netns exec "$a" true 2>"$work/why" || skip "no way into them: $(cat "$work/why")"
  ip netns add "$b" || return 1
  spaces+=("$b")
  /usr/bin/python3 "$here/slow_link.py" "kva$id$1" "kvb$id$1" >"$work/$1.link" 2>&1 &
  link=$!
  started+=("$link")
  await "$work/$1.link" ready || skip "no cable: $(tail -1 "$work/$1.link")"
  ip link set "kva$id$1" netns "$a" && ip link set "kvb$id$1" netns "$b" &&
    ip -n "$a" address add 10.77.0.1/24 dev "kva$id$1" && ip -n "$a" link set "kva$id$1" up &&
    ip -n "$b" address add 10.77.0.2/24 dev "kvb$id$1" && ip -n "$b" link set "kvb$id$1" up
}

# await FILE WORD: until the file holds the word, for ten seconds at most.
await() {
  for _ in $(seq 100); do
    grep -qs "$2" "$1" && return 0
    sleep 0.1
  done
  return 1
}

# receiver NAME: starts one at the end b. Sets `receiver` to its process and `folder` to its folder.
receiver() {
  ip netns exec "kv$id$1-b" "$program" receive >"$work/$1.folder" 2>&1 &
  receiver=$!
  started+=("$receiver")
  await "$work/$1.folder" "2 on port: 5050" || return 1
  folder=$(head -1 "$work/$1.folder")
}

# sender NAME FILE: starts one at the end a, and sets `sender` to its process.
sender() {
  ip netns exec "kv$id$1-a" "$program" send "$2" 10.77.0.2 >"$work/$1.sent" 2>&1 &
  sender=$!
  started+=("$sender")
}

# ended NAME EXPECTED: waits for the sender, and checks how it ended.
failures=0
ended() {
  wait "$sender"
  local result=$?
  echo "$1: $(tr '\n' ' ' <"$work/$1.sent")"
  [ "$result" = "$2" ] || fail "$1: the sender ended with $result instead of $2"
}
fail() {
  echo "FAILED: $1"
  failures=$((failures + 1))
}

head -c 2000000 /dev/urandom >"$work/small.wad"
head -c 60000000 /dev/urandom >"$work/large.wad"

whole() {
  network w && receiver w || return 1
  sender w "$work/small.wad"
  ended w 0
  sleep 2
  cmp "$work/small.wad" "$folder/received/small.wad" || fail "w: not the same bytes"
}

# The older file stays as it is, and what came stays beside it.
broken() {
  [ "$(cat "$folder/received/large.wad")" = old ] || fail "$1: the older file was touched"
  local size
  size=$(stat -c %s "$folder/received/large.wad.part")
  cmp -n "$size" "$work/large.wad" "$folder/received/large.wad.part" || fail "$1: other bytes"
  echo "$1: $size bytes came"
}

cut() {
  network c && receiver c || return 1
  mkdir -p "$folder/received" && echo old >"$folder/received/large.wad"
  sender c "$work/large.wad"
  sleep 3
  ip -n "kv${id}c-a" link set "kva${id}c" down
  ended c 3
  broken c
}

still() {
  network s && receiver s || return 1
  mkdir -p "$folder/received" && echo old >"$folder/received/large.wad"
  sender s "$work/large.wad"
  sleep 2
  # The namespace's program itself, as ip has become it.
  kill -STOP "$receiver"
  sleep 40
  kill -CONT "$receiver"
  ended s 3
  sleep 1
  broken s
}

# Each in a shell of its own, so that they wait at the same time.
run() {
  (
    trap cleanup EXIT
    work=$(mktemp -d -p "$work")
    ln -s ../small.wad ../large.wad "$work"
    spaces=() started=()
    "$1" || fail "$1: the network or the receiver did not come up"
    exit "$failures"
  )
}
processes=()
for each in whole cut still; do
  run "$each" &
  processes+=("$!")
done
result=0
for process in "${processes[@]}"; do
  wait "$process"
  status=$?
  [ "$status" = 0 ] || result=$status
done
[ "$result" = 0 ] && echo "whole, cut and still: all as they should be"
exit "$result"
