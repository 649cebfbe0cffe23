#!/usr/bin/env bash
# attacks.sh SERVER-PROGRAM: what strangers at many addresses do to the companion server, in a
# network of its own in which all addresses of 10.7.0.0/16 and some of fd07::/16 are this machine's.
# Ends with 77 where the system makes no such network.
set -u
here=$(cd "$(dirname "$0")" && pwd)
if [ -z "${KELVARON_ATTACKED_NETWORK:-}" ]; then
  as_root=(--net)
  [ "$(id -u)" = 0 ] || as_root=(--net --map-root-user)
  unshare "${as_root[@]}" true 2>/dev/null || {
    echo "skipped: no network namespaces"
    exit 77
  }
  KELVARON_ATTACKED_NETWORK=1 exec unshare "${as_root[@]}" "$0" "$@"
fi
command -v ip >/dev/null || {
  echo "skipped: the program ip is missing"
  exit 77
}
ip link set lo up && ip route add local 10.7.0.0/16 dev lo || exit 77
for address in fd07::1 fd07:0:0:1::1 fd07:0:0:1::2 fd07:0:0:1::3 fd07:0:0:1::4 \
  fd07:0:0:1:ffff::9 fd07:0:0:1:1234::1 fd07:0:0:2::1; do
  ip address add "$address/128" dev lo nodad || exit 77
done
exec /usr/bin/python3 "$here/attacks.py" "$1"
