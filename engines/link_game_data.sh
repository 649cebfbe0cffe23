#!/usr/bin/env bash
# Links game data under the names that Kelvaron's setup asks for.
#
#   link_game_data.sh FOLDER [SOURCE...]
#
# Looks in the SOURCEs, then in DOOMWADDIR, then where Debian's freedoom and the packages that
# game-data-packager makes of bought games put theirs, whatever the capitals of the names. Where a
# bought game isn't found, the free data stand in for it. What has one of the names already stays as
# it is. KELVARON_GAME_DATA names another folder in place of Debian's.
set -u
if [ $# -lt 1 ]; then
  sed -n '4p' "$0" >&2
  exit 2
fi
folder=$1
shift
sources=("$@" ${DOOMWADDIR:+"$DOOMWADDIR"} "${KELVARON_GAME_DATA:-/usr/share/games/doom}")
# A name, and what may stand behind it, the best first.
links=("DOOM.WAD doom.wad doomu.wad doom1.wad freedoom1.wad" "DOOM2.WAD doom2.wad freedoom2.wad"
  "DOOM2F.WAD doom2f.wad freedoom2.wad" "PLUTONIA.WAD plutonia.wad freedoom2.wad"
  "TNT.WAD tnt.wad freedoom2.wad")

# found NAME...: where the first of these files is; nothing where none is.
found() {
  local name source
  for name in "$@"; do
    for source in "${sources[@]}"; do
      [ -d "$source" ] || continue
      find "$(realpath -- "$source")" -maxdepth 1 -iname "$name" -readable ! -type d -print -quit
    done
  done | head -n 1
}

linked=0
for link in "${links[@]}"; do
  read -r -a names <<<"$link"
  name=$folder/${names[0]}
  if [ -e "$name" ] || [ -L "$name" ]; then
    echo "$name is there already"
    linked=1
    continue
  fi
  file=$(found "${names[@]:1}")
  if [ -z "$file" ]; then
    echo "$name has no data" >&2
    continue
  fi
  mkdir -p -- "$folder" && ln -s -- "$file" "$name" || exit 1
  echo "$name leads to $file"
  linked=1
done
[ $linked = 1 ] && exit 0
echo "No game data in ${sources[*]}. Debian has free ones in the package freedoom:" >&2
echo "  apt-get install freedoom" >&2
exit 1
