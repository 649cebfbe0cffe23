# What install_test_inside.sh and service_test_inside.sh share; to be sourced by bash. Who sources it
# has `patience`, the seconds that await waits at most, and `evidence`, which prints what explains a
# failure.
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8

step() { echo "== $1"; }

fail() {
  echo "FAILED: $1" >&2
  evidence >&2 || true
  exit 1
}

# await WHAT COMMAND...: until the command succeeds.
await() {
  local what=$1
  shift
  for _ in $(seq $((patience * 10))); do
    "$@" >/dev/null 2>&1 && return 0
    sleep 0.1
  done
  fail "$what"
}

# next_version PACKAGE NEXT: the same files under the next version, as a rebuilt package has them.
next_version() {
  local folder
  folder=$(mktemp -d)
  dpkg-deb -R "$1" "$folder/next"
  sed -i 's/^\(Version: .*\|.* (= [0-9][^)]*\)/&+next/; s/)+next/+next)/' "$folder/next/DEBIAN/control"
  dpkg-deb -b "$folder/next" "$2" >/dev/null
  rm -r "$folder"
}
