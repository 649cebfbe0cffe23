#!/usr/bin/env bash
# The program for Windows, out of its zip, under Wine in a prefix of its own, beside clients and the
# server of this system: what ./run windows and the preset windows have built.
#   windows.sh
set -eu
cd "$(dirname "$0")/../.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unzip -q build/windows-packages/kelvaron-*-windows-x64.zip -d "$work"
export KELVARON_WINDOWS=$work/Kelvaron WINEPREFIX=$work/wine
export KELVARON_WINDOWS_RECORDER=$PWD/build/windows/tests/start_recorder.exe
export KELVARON_RECORDING_ENGINE=$PWD/build/release/tests/recording_engine
# Debian has none of Windows' fonts; Wine would take one with serifs.
for font in "Segoe UI" Tahoma "MS Shell Dlg" "MS Shell Dlg 2"; do
  WINEDEBUG=-all wine reg add 'HKCU\Software\Wine\Fonts\Replacements' /v "$font" /d "DejaVu Sans" /f
done >/dev/null 2>&1
# The sockets are its server's, which has to be of the tests' network.
wineserver -k
tests/driven/run.sh "$PWD/build/release/bin" windows windows_lines
