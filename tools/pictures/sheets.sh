#!/usr/bin/env bash
# Makes sheets of the main forms as two builds show them, the older one on the left.
#
#   tools/pictures/sheets.sh OLDER NEWER SHEET
#       one sheet out of two folders that kelvaron_shots filled
#   tools/pictures/sheets.sh --all OLDER NEWER FOLDER
#       the sheets of docs/forms.md, out of the kelvaron_shots of two builds
set -u
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../display.sh"
. "$here/../packages.sh"
need_packages "${kelvaron_display_packages[@]}" fonts-dejavu-core || exit 1

work=$(mktemp -d)
finish() {
  stop_display
  rm -rf "$work"
}
trap finish EXIT

forms=(room:'The room' game_request:'Request a game' configuration:'Configure Games'
  awaiting_verification:'Waiting for the answers' final_chance:'The last look'
  file_send:'Sending a file' profile_own:"One's own profile" ping:Ping login:Login)
column=880  # pixels: what is wider is made smaller

sheet() {
  local form name height rows=()
  for form in "${forms[@]}"; do
    name=${form%%:*}
    height=$(convert "$1/$name.png" "$2/$name.png" -resize "$column>" -format '%h\n' info: |
      sort -n | tail -1)
    [ -n "$height" ] || return 1
    rows+=("$work/$name.png")
    montage -background '#3c3f46' -fill white -font DejaVu-Sans -pointsize 15 \
      -label "${form#*:}, before" "$1/$name.png" -label "${form#*:}, now" "$2/$name.png" \
      -tile 2x1 -gravity south -geometry "${column}x$height>+8+8" "${rows[-1]}" || return 1
  done
  # The sheets are documents: few colours keep them small.
  convert "${rows[@]}" -append +dither -colors 250 -strip "PNG8:$3" && echo "made $3"
}

if [ "${1:-}" != --all ]; then
  [ $# -eq 3 ] || { sed -n '2,7s/^# \?//p' "$0"; exit 2; }
  sheet "$@"
  exit
fi
[ $# -eq 4 ] || { sed -n '2,7s/^# \?//p' "$0"; exit 2; }

# all NAME SCREEN POINTS [FACTOR]: a sheet at this text, on a screen of this size.
all() {
  local which build=1
  start_display "$2" || return 1
  for which in "$older" "$newer"; do
    QT_QPA_PLATFORM=xcb QT_SCALE_FACTOR=${4:-1} "$which" "$work/$build" "$3" >/dev/null || return 1
    build=$((build + 1))
  done
  stop_display
  sheet "$work/1" "$work/2" "$folder/$1.png"
}
older=$2 newer=$3 folder=$4
mkdir -p "$folder"
for points in 9 14 18; do all "forms_${points}pt_1280" 1280x1024 "$points" || exit 1; done
for points in 9 18; do all "forms_${points}pt_1024" 1024x600 "$points" || exit 1; done
all forms_scale_200 1280x1024 9 2 || exit 1
