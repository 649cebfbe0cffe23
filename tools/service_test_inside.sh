#!/usr/bin/env bash
# What service_test.sh runs in its container.
set -eu
cd "$(dirname "$0")"
folder=/var/lib/kelvaron-server
patience=10
evidence() { journalctl -q -u kelvaron-server -n 20 --no-pager; }
. ./test_inside.sh
is() { [ "$(systemctl is-active kelvaron-server)" = "$1" ] || fail "the service is not $1: $2"; }
answers() { (exec 3<>/dev/tcp/127.0.0.1/3069) 2>/dev/null; }
logged() { journalctl -q -u kelvaron-server --no-pager | grep -qF "$1"; }

exposure() { systemd-analyze security kelvaron-server --no-pager | tail -1; }

step "a fresh install starts nothing"
find / -xdev \( -path /proc -o -path /run -o -path /kelvaron-test -o -path /var/log \) -prune -o -print | sort >before
dpkg -i server.deb >dpkg.log 2>&1 || { cat dpkg.log; fail "dpkg"; }
is inactive "after the install"
[ "$(systemctl is-enabled kelvaron-server)" = disabled ] || fail "the service is enabled"

step "commands of root mean the service's folder, others are refused with a sentence"
echo "right word" | kelvaron-server --add-moderator ann ann@example.org
[ ! -e /usr/bin/server-data ] || fail "a folder beside the program"
kelvaron-server --check
if runuser -u nobody -- kelvaron-server --bans >refused 2>&1; then fail "nobody has the folder"; fi
grep -F "for root and the user kelvaron-server alone" refused

step "the service"
systemctl enable -q --now kelvaron-server
await "the port does not answer" answers
[ "$(stat -c %a:%U "$folder")" = 700:kelvaron-server ] || fail "folder: $(stat -c %a:%U "$folder")"
[ "$(stat -c %U "$folder/moderators")" = kelvaron-server ] || fail "whose are the moderators?"
kelvaron-server --status
kelvaron-server --status=json
if kelvaron-server --port 4069 >second 2>&1; then fail "a second server on the folder"; fi
grep -F "another server runs on this folder" second
systemctl reload kelvaron-server
await "no reload in the journal" logged "the files of the folder are read anew"
echo "speed = 3" >>"$folder/settings"
if systemctl reload kelvaron-server; then fail "a reload of a faulty file ends well"; fi
if systemctl restart kelvaron-server; then fail "a restart on a faulty file ends well"; fi
await "no fault in the journal" logged 'there is no setting "speed"'
sed -i /speed/d "$folder/settings"
systemctl restart kelvaron-server
answers || fail "a start ends before the server listens"
kelvaron-server --ban eve spam --until 2999-12-31
await "no ban in the journal" logged "ban set: eve, by root: spam"
kelvaron-server --unban eve
await "nobody's command in the journal" logged "root commands: --unban eve"
exposure

step "backup and restore"
tar -C "$folder" -czf backup.tar.gz settings reserved motd bans moderators
systemctl stop kelvaron-server
rm "$folder/moderators"
tar -C "$folder" -xzf backup.tar.gz
kelvaron-server --check
systemctl start kelvaron-server
await "the port does not answer after the restore" answers

step "a drop-in"
mkdir -p /etc/systemd/system/kelvaron-server.service.d
printf '[Service]\nExecStart=\nExecStart=/usr/bin/kelvaron-server --address 127.0.0.1\nIPAddressDeny=any\nIPAddressAllow=localhost\n' \
  >/etc/systemd/system/kelvaron-server.service.d/override.conf
systemctl daemon-reload
systemctl restart kelvaron-server
await "the drop-in is not heard" logged "listens on 127.0.0.1:3069"
await "the port does not answer behind the drop-in" answers
exposure

step "a second server"
sed 's|--address ::|& --port 4069|' /lib/systemd/system/kelvaron-server.service \
  >/etc/systemd/system/kelvaron-second.service
systemctl daemon-reload
systemctl start kelvaron-second
kelvaron-server --status --folder /var/lib/kelvaron-second
systemctl stop kelvaron-second
rm -r /etc/systemd/system/kelvaron-second.service /var/lib/kelvaron-second
kelvaron-server --status

step "an upgrade restarts what runs"
before=$(systemctl show -P MainPID kelvaron-server)
next_version server.deb next.deb
dpkg -i next.deb >dpkg.log 2>&1 || { cat dpkg.log; fail "upgrade"; }
is active "after the upgrade"
[ "$(systemctl show -P MainPID kelvaron-server)" != "$before" ] || fail "the old program runs on"
await "the port does not answer after the upgrade" answers
[ -f "$folder/moderators" ] || fail "an upgrade loses the folder"

step "removal ends it, purge leaves nothing"
dpkg -r kelvaron-server >/dev/null 2>&1
is inactive "after the removal"
if answers; then fail "the port answers after the removal"; fi
[ -f "$folder/moderators" ] || fail "a removal loses the folder"
rm -r /etc/systemd/system/kelvaron-server.service.d
dpkg -P kelvaron-server >/dev/null 2>&1
[ ! -e "$folder" ] || fail "a purge leaves the folder"
find / -xdev \( -path /proc -o -path /run -o -path /kelvaron-test -o -path /var/log \) -prune -o -print | sort >after
echo "left: $(comm -13 before after | tr '\n' ' ')"
step "done"
