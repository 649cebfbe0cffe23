#!/usr/bin/env bash
# Links the free game data that Debian's package freedoom has under the names that Kelvaron's setup
# asks for.
#
#   link_game_data.sh FOLDER
#
# The names stand for bought games; the free data serve for all of them. What has one of the names
# already stays as it is. KELVARON_GAME_DATA names another folder of freedoom1.wad and freedoom2.wad.
set -u
if [ $# -ne 1 ]; then
  echo "Usage: $0 FOLDER" >&2
  exit 2
fi
folder=$1
source=${KELVARON_GAME_DATA:-/usr/share/games/doom}
links=(DOOM.WAD:freedoom1.wad DOOM2.WAD:freedoom2.wad DOOM2F.WAD:freedoom2.wad
  PLUTONIA.WAD:freedoom2.wad TNT.WAD:freedoom2.wad)

missing=()
for wad in freedoom1.wad freedoom2.wad; do
  [ -r "$source/$wad" ] || missing+=("$source/$wad")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Missing: ${missing[*]}. Debian has them in the package freedoom:" >&2
  echo "  apt-get install freedoom" >&2
  exit 1
fi
mkdir -p -- "$folder" || exit 1
for link in "${links[@]}"; do
  name=$folder/${link%%:*}
  if [ -e "$name" ] || [ -L "$name" ]; then
    echo "$name is there already"
  else
    ln -s -- "$source/${link##*:}" "$name" || exit 1
    echo "$name leads to ${link##*:}"
  fi
done
