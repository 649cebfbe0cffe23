#!/usr/bin/env bash
# Renders every form in its states to pictures, at 100, 150 and 200 percent.
#
#   tools/pictures/shots.sh [FOLDER]   build/shots unless told
set -u
cd "$(dirname "$0")/../.." || exit 1
. tools/packages.sh
. tools/display.sh
trap stop_display EXIT
need_packages "${kelvaron_core_packages[@]}" "${kelvaron_desktop_packages[@]}" \
  "${kelvaron_test_packages[@]}" "${kelvaron_display_packages[@]}" || exit 1
cmake --preset release -DKELVARON_TESTS=ON >/dev/null &&
  cmake --build --preset release --target kelvaron_shots || exit 1
# Wide enough for the largest form at twice its size.
start_display 2400x1600 || exit 1
folder=${1:-build/shots}
for percent in 100 150 200; do
  QT_QPA_PLATFORM=xcb QT_SCALE_FACTOR=$(printf '%d.%02d' $((percent / 100)) $((percent % 100))) \
    build/release/tests/kelvaron_shots "$folder/$percent" || exit 1
done
echo "The pictures are in $folder."
