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
# The logo without its emblem, for where that stands beside it.
for scale in 1 2 3; do
  suffix=$([ $scale = 1 ] || echo "@${scale}x")
  rsvg-convert --zoom $scale --left=-$((52 * scale))px --page-width $((248 * scale))px \
    --page-height $((48 * scale))px --output "pictures/wordmark$suffix.png" logo.svg
done
for size in 16 32 48 64 128 256; do
  rsvg-convert --width $size --height $size --output "pictures/icon_$size.png" icon.svg
done
# The icon of the program for Windows. Needs ImageMagick.
convert $(printf 'pictures/icon_%s.png ' 16 32 48 64 128 256) kelvaron.ico
