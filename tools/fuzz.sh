#!/usr/bin/env bash
# tools/fuzz.sh SECONDS: runs each fuzz target for so long from its corpus; finds stay in
# build/fuzz/found.
set -u
cd "$(dirname "$0")/.." || exit 1
mkdir -p build/fuzz/found

# dictionary TARGET: the target's own words, and the keywords of the table that it feeds.
dictionary() {
  local table=/dev/null
  case $1 in
    arrival) table=client/kelvaron_client.cpp ;;
    lobby) table=server/dispatch.cpp ;;
  esac
  cat "fuzz/$1.dict"
  sed -n 's/.*\.keyword = \("[^"]*"\).*/\1/p' $table
}

for target in arrival transfer command playlist ping_output address lobby; do
  mkdir -p "build/fuzz/corpus/$target"
  dictionary "$target" >"build/fuzz/$target.dict"
  # A target may work in a folder of its own, so that all places are told in full.
  "build/fuzz/bin/fuzz_$target" "-dict=$PWD/build/fuzz/$target.dict" -max_len=4096 "-max_total_time=$1" \
    "-artifact_prefix=$PWD/build/fuzz/found/$target-" "$PWD/build/fuzz/corpus/$target" \
    "$PWD/fuzz/corpus/$target" || exit 1
done
