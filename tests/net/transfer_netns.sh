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
export TMPDIR=$work # of the programs' folders too
trap 'rm -rf "$work"' EXIT
id=$((BASHPID % 100000))
head -c 2000000 /dev/urandom >"$work/small.wad"
head -c 60000000 /dev/urandom >"$work/large.wad"

# await FILE WORD: until the file holds the word, for ten seconds at most.
await() {
  for _ in $(seq 100); do
    grep -qs "$2" "$1" && return 0
    sleep 0.1
  done
  return 1
}

# What happens on the way.
whole() { :; }
cut() {
  sleep 3
  ip -n "$a" link set "kva$id$1" down
}
still() {
  sleep 2
  # The namespace's program itself, as ip has become it.
  kill -STOP "$receiver"
  sleep 40
  kill -CONT "$receiver"
}

# transfer WHAT FILE EXPECTED: from the end a to the end b, and how the sender ends.
transfer() (
  fail() {
    echo "FAILED: $what: $1"
    exit 1
  }
  what=$1 at=$work/$1 a=kv$id$1-a b=kv$id$1-b
  trap 'exec 2>/dev/null; kill -KILL $(jobs -p); wait; ip netns del "$a"; ip netns del "$b"' EXIT
  ip netns add "$a" 2>"$at.why" || skip "no network namespaces: $(cat "$at.why")"
  # In a changed root the system lets one make them but not enter them.
  ip netns exec "$a" true 2>"$at.why" || skip "no way into them: $(cat "$at.why")"
  ip netns add "$b"
  /usr/bin/python3 "$here/slow_link.py" "kva$id$1" "kvb$id$1" >"$at.link" 2>&1 &
  await "$at.link" ready || skip "no cable: $(tail -1 "$at.link")"
  ip link set "kva$id$1" netns "$a" && ip link set "kvb$id$1" netns "$b" &&
    ip -n "$a" address add 10.77.0.1/24 dev "kva$id$1" && ip -n "$a" link set "kva$id$1" up &&
    ip -n "$b" address add 10.77.0.2/24 dev "kvb$id$1" && ip -n "$b" link set "kvb$id$1" up ||
    fail "the network did not come up"
  ip netns exec "$b" "$program" receive >"$at.folder" 2>&1 &
  receiver=$!
  await "$at.folder" "2 on port: 5050" || fail "the receiver did not come up"
  received=$(head -1 "$at.folder")/received
  [ "$1" = whole ] || { mkdir -p "$received" && echo old >"$received/$2"; }
  ip netns exec "$a" "$program" send "$work/$2" 10.77.0.2 >"$at.sent" 2>&1 &
  sender=$!
  "$1" "$1"
  wait "$sender"
  result=$?
  echo "$1: $(tr '\n' ' ' <"$at.sent")"
  [ "$result" = "$3" ] || fail "the sender ended with $result instead of $3"
  sleep 2
  if [ "$1" = whole ]; then
    cmp "$work/$2" "$received/$2" || fail "not the same bytes"
    exit
  fi
  # The older file stays as it is, and what came stays beside it.
  [ "$(cat "$received/$2")" = old ] || fail "the older file was touched"
  size=$(stat -c %s "$received/$2.part")
  cmp -n "$size" "$work/$2" "$received/$2.part" || fail "other bytes"
  echo "$1: $size bytes came"
)

# At the same time, as they wait long.
transfer whole small.wad 0 &
transfer cut large.wad 3 &
transfer still large.wad 3 &
result=0
for process in $(jobs -p); do wait "$process" || result=$?; done
[ "$result" = 0 ] && echo "whole, cut and still: all as they should be"
exit "$result"
