#!/usr/bin/env bash
# Makes sheets of all forms as two builds show them, the older one on the left: one of the large
# forms, and one of the small ones with "_small" behind its name.
#
#   tools/pictures/sheets.sh OLDER NEWER SHEET
#       the two out of two folders that kelvaron_shots filled; SHEET is a name without ".png"
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

large=(room:'The room' game_request:'Request a game' configuration:'Configure Games'
  awaiting_verification:'Waiting for the answers' offer:'An offer' final_chance:'The last look'
  profile_own:"One's own profile" about:'The about box')
# In pairs of about the same height.
small=(login:Login message_of_the_day:'The message of the day'
  muted:'People you have muted' user_kick:'User kick'
  file_send:'Sending a file' file_server:'The file server'
  status_request:'Asking for the status' ping:Ping
  private_message:'A private message' volume:Volume
  in_game:'In a game')

# sheet OLDER NEWER FILE FORMS COLUMN FORM...: so many forms in a row; a picture wider than COLUMN
# pixels is made smaller.
sheet() {
  local older=$1 newer=$2 file=$3 forms=$4 column=$5 form name height rows=() pictures labelled
  shift 5
  while [ $# -gt 0 ]; do
    pictures=() labelled=()
    for form in "${@:1:forms}"; do
      name=${form%%:*}.png
      pictures+=("$older/$name" "$newer/$name")
      labelled+=(-label "${form#*:}, before" "$older/$name" -label "${form#*:}, now" "$newer/$name")
    done
    shift $((forms < $# ? forms : $#))
    height=$(convert "${pictures[@]}" -resize "$column>" -format '%h\n' info: | sort -n | tail -1)
    [ -n "$height" ] || return 1
    rows+=("$work/row${#rows[@]}.png")
    montage -background '#3c3f46' -fill white -font DejaVu-Sans -pointsize 15 "${labelled[@]}" \
      -tile "${#pictures[@]}x1" -gravity south -geometry "${column}x$height>+8+8" "${rows[-1]}" ||
      return 1
  done
  # The sheets are documents: few colours keep them small.
  convert -background '#3c3f46' "${rows[@]}" -append +dither -colors 250 -strip "PNG8:$file" &&
    echo "made $file"
}

# sheets OLDER NEWER SHEET
sheets() {
  sheet "$1" "$2" "$3.png" 1 880 "${large[@]}" && sheet "$1" "$2" "$3_small.png" 2 580 "${small[@]}"
}

if [ "${1:-}" != --all ]; then
  [ $# -eq 3 ] || { sed -n '2,8s/^# \?//p' "$0"; exit 2; }
  sheets "$@"
  exit
fi
[ $# -eq 4 ] || { sed -n '2,8s/^# \?//p' "$0"; exit 2; }

# all NAME SCREEN POINTS [FACTOR]: the sheets at this text, on a screen of this size.
all() {
  local which build=1
  start_display "$2" || return 1
  for which in "$older" "$newer"; do
    QT_QPA_PLATFORM=xcb QT_SCALE_FACTOR=${4:-1} "$which" "$work/$build" "$3" >/dev/null || return 1
    build=$((build + 1))
  done
  stop_display
  sheets "$work/1" "$work/2" "$folder/$1"
}
older=$2 newer=$3 folder=$4
mkdir -p "$folder"
for points in 9 14 18; do
  all "forms_${points}pt_1280" 1280x1024 "$points" || exit 1
  all "forms_${points}pt_1024" 1024x600 "$points" || exit 1
done
all forms_scale_200 1280x1024 9 2 || exit 1
