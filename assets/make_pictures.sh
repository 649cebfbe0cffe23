#!/bin/sh
# Renders the drawings (*.svg) beside this script into pictures/, which stays in the repository so
# that a build needs no SVG tool. Needs rsvg-convert (Debian: librsvg2-bin).
set -eu
cd "$(dirname "$0")"
mkdir -p pictures

for drawing in logo login_art; do
  rsvg-convert --zoom 1 --output "pictures/$drawing.png" "$drawing.svg"
  rsvg-convert --zoom 2 --output "pictures/$drawing@2x.png" "$drawing.svg"
  rsvg-convert --zoom 3 --output "pictures/$drawing@3x.png" "$drawing.svg"
done
for size in 16 32 48 64 128 256; do
  rsvg-convert --width $size --height $size --output "pictures/icon_$size.png" icon.svg
done
