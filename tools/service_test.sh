#!/usr/bin/env bash
# tools/service_test.sh ROOT [MIRROR]: the server's package of build/packages under systemd, in a
# container of its own: a fresh install, commands, a running service that is upgraded, removed and
# purged. ROOT is made with debootstrap when it isn't there (needs MIRROR), and what the container
# changes in it is thrown away. As the administrator only, with systemd-nspawn of systemd-container.
set -eu
cd "$(dirname "$0")/.."
root=$1
[ -d "$root" ] || debootstrap --variant=minbase --include=systemd,systemd-sysv,dbus,libsodium23 \
  bookworm "$root" "$2"
test=$(mktemp -d)
trap 'rm -r "$test"' EXIT
cp build/packages/kelvaron-server_*.deb "$test/server.deb"
cp tools/service_test_inside.sh tools/test_inside.sh "$test/"
cat >"$root/etc/systemd/system/kelvaron-test.service" <<'EOF'
[Unit]
After=multi-user.target

[Service]
Type=oneshot
ExecStart=/bin/sh -c '/kelvaron-test/service_test_inside.sh >/kelvaron-test/told 2>&1; \
  echo $? >/kelvaron-test/code'
ExecStopPost=/usr/bin/systemctl --no-block poweroff

[Install]
WantedBy=default.target
EOF
systemctl --root="$root" enable -q kelvaron-test.service
timeout 300 systemd-nspawn -b -q -D "$root" --machine=kelvaron-test --volatile=overlay \
  --bind="$test:/kelvaron-test" --private-network --register=no --keep-unit </dev/null >"$test/boot.log" 2>&1 || true
[ -f "$test/code" ] || { tail "$test/boot.log"; exit 1; }
cat "$test/told"
exit "$(cat "$test/code")"
