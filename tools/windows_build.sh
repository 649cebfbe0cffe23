#!/usr/bin/env bash
# Makes Kelvaron for Windows out of this tree and Debian's packages:
#   build/windows-packages/kelvaron-VERSION-windows-x64.zip and build/windows-packages/kelvaron-VERSION-setup.exe
set -euo pipefail
cd "$(dirname "$0")/.."

toolkit=$(tools/windows_toolkit.sh)
ln -sfn "$toolkit" build/toolkit/current
cmake --preset windows-desktop >build/windows.log 2>&1 &&
  cmake --build --preset windows-desktop --target kelvaron kelvaron_assets >>build/windows.log 2>&1 || {
  tail -40 build/windows.log
  echo "The build failed; build/windows.log has it whole." >&2
  exit 1
}
bin=$PWD/build/windows-desktop/bin
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/windows-desktop/CMakeCache.txt)
# One time for all that is made from here on, that of the version, so that two builds are alike.
time=$(sed -n "s/^## $version (\(.*\))$/\1/p" CHANGELOG.md)
SOURCE_DATE_EPOCH=$(date -u -d "$time" +%s)
export SOURCE_DATE_EPOCH TZ=UTC
work=$PWD/build/windows-desktop/package
files=$work/Kelvaron
rm -rf "$work"
mkdir -p "$files/platforms" "$files/sounds" "$files/licences" build/windows-packages

cp "$bin/kelvaron.exe" "$bin/game.wav" "$files"
cp "$bin"/sounds/*.wav "$files/sounds"
cp "$toolkit/plugins/platforms/qwindows.dll" "$files/platforms"
runtime=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++-6.dll)")
threads=$(x86_64-w64-mingw32-g++-posix -print-file-name=libwinpthread-1.dll)

imports() { x86_64-w64-mingw32-objdump -p "$1" | sed -n 's/^\s*DLL Name: //p'; }

# Whatever is needed and isn't the system's own comes along, and what that needs.
todo=("$files/kelvaron.exe" "$files/platforms/qwindows.dll")
while [ ${#todo[@]} -gt 0 ]; do
  file=${todo[0]}
  todo=("${todo[@]:1}")
  for name in $(imports "$file"); do
    [ -e "$files/$name" ] && continue
    for source in "$toolkit/bin/$name" "$runtime/$name" "$(dirname "$threads")/$name"; do
      if [ -e "$source" ]; then
        install -m 644 "$source" "$files/$name"
        x86_64-w64-mingw32-strip "$files/$name"
        todo+=("$files/$name")
        continue 2
      fi
    done
    # Names under which Windows has its own in parts.
    case "$name" in api-ms-win-*) continue ;; esac
    # Wine has the libraries of every Windows since 10.
    ls /usr/lib/*/wine/x86_64-windows/"${name,,}" >/dev/null 2>&1 || {
      echo "$(basename "$file") needs $name, which is nowhere." >&2
      exit 1
    }
  done
done

text() { sed 's/\r*$/\r/' "$1" >"$2"; }
text LICENSE "$files/LICENSE.txt"
text packaging/windows/README.txt "$files/README.txt"
text /usr/share/doc/qt6-base-dev/copyright "$files/licences/Qt.txt"
text /usr/share/doc/mingw-w64-common/copyright "$files/licences/mingw-w64.txt"
text /usr/share/doc/gcc-mingw-w64-base/copyright "$files/licences/GCC.txt"
for licence in GPL-3 LGPL-3; do
  text "/usr/share/common-licenses/$licence" "$files/licences/$licence.txt"
done
cp assets/kelvaron.ico "$work"

find "$work" -exec touch -d "@$SOURCE_DATE_EPOCH" {} +
zip=$PWD/build/windows-packages/kelvaron-$version-windows-x64.zip
rm -f "$zip"
(cd "$work" && find Kelvaron -type f | LC_ALL=C sort | zip -X -9 -q -@ "$zip")

# What the installer brings, and nothing else, the uninstaller takes away.
(
  cd "$files"
  find . -mindepth 1 -type d -printf '%P\n' | LC_ALL=C sort >"$work/folders"
  for folder in "" $(cat "$work/folders"); do
    windows=${folder//\//\\}
    printf 'SetOutPath "$INSTDIR%s"\n' "${windows:+\\$windows}"
    find "./$folder" -maxdepth 1 -type f -printf '%f\n' | LC_ALL=C sort | while read -r file; do
      printf 'File "%s/%s"\n' "$files${folder:+/$folder}" "$file"
    done
  done >"$work/install.nsh"
  {
    find . -type f -printf '%P\n' | LC_ALL=C sort | sed 's|/|\\|g; s|.*|Delete "$INSTDIR\\&"|'
    sed 's|/|\\|g; s|.*|RMDir "$INSTDIR\\&"|' "$work/folders"
  } >"$work/uninstall.nsh"
)
makensis -V2 "-DVERSION=$version" "-DFILES=$files" "-DLISTS=$work" \
  "-DOUTPUT=$PWD/build/windows-packages/kelvaron-$version-setup.exe" packaging/windows/kelvaron.nsi
ls -l build/windows-packages/kelvaron-"$version"-*
