#!/usr/bin/env bash
# Runs the tests of windows on a virtual display with a window manager.
#
#   managed_windows.sh DESKTOP-TESTS
set -u
. "$(dirname "$0")/../../tools/display.sh"
trap stop_display EXIT
start_display || exit 1
export QT_QPA_PLATFORM=xcb
"$1" --gtest_filter='Windows.*:ListBoxes.*:ChoiceControls.*:FileDialogs.*:Boxes.*:ChatViewTest.CopyGives*:InputLine.*'
