#!/usr/bin/env bash
# tools/fuzz.sh SECONDS: runs the fuzz target from the corpus; finds stay in build/fuzz/found.
set -u
cd "$(dirname "$0")/.." || exit 1
mkdir -p build/fuzz/corpus build/fuzz/found
build/fuzz/bin/fuzz_arrival -dict=fuzz/arrival.dict -max_len=4096 -max_total_time="$1" \
  -artifact_prefix=build/fuzz/found/ build/fuzz/corpus fuzz/corpus/arrival
