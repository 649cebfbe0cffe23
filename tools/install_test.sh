#!/usr/bin/env bash
# tools/install_test.sh ROOT [MIRROR]: the packages of build/packages in a fresh Debian: installed by
# apt, the server checked and started, the client started from its desktop entry by an ordinary user
# under a virtual display, logged in, used, restarted; upgraded, removed, purged. What is left on the
# disk is listed at the end. ROOT is made with debootstrap when it isn't there (needs MIRROR). As the
# administrator only.
set -eu
cd "$(dirname "$0")/.."
root=$1
packages=(build/packages/kelvaron_*.deb build/packages/kelvaron-server_*.deb
  build/packages/kelvaron-engines_*.deb)
[ -d "$root" ] || debootstrap --variant=minbase bookworm "$root" "$2"
cp "${packages[@]}" "$root/tmp/"
cp tools/install_test_inside.sh tools/test_inside.sh "$root/tmp/"
mount --bind /dev "$root/dev"
cleanup() {
  umount -l "$root/dev"
}
trap cleanup EXIT
cp /etc/resolv.conf "$root/etc/resolv.conf"
printf '127.0.0.1 localhost\n127.0.1.1 %s\n' "$(hostname)" >"$root/etc/hosts"
# With processes of its own: what it ends by name is its own, and nothing outlives it.
unshare --pid --fork --kill-child --mount-proc="$root/proc" chroot "$root" /tmp/install_test_inside.sh
