#!/usr/bin/env bash
# Builds the Debian packages from what is checked in, into build/packages.
set -eu
cd "$(dirname "$0")/.."
version=$(sed -n 's/^project(kelvaron VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
out=build/packages
rm -rf "$out"
mkdir -p "$out/kelvaron-$version"
git archive HEAD | tar -x -C "$out/kelvaron-$version"
(cd "$out/kelvaron-$version" && dpkg-buildpackage -b -us -uc >../build.log 2>&1) || {
  tail -n 40 "$out/build.log"
  echo "The packages could not be built; $out/build.log has it whole."
  exit 1
}
rm -rf "${out:?}/kelvaron-$version"
ls "$out"/*.deb
