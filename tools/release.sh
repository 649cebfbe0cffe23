#!/usr/bin/env bash
# tools/release.sh VERSION: checks that all places agree on the version, and makes a source archive,
# the packages and their checksums, in build/release-VERSION.
set -eu
cd "$(dirname "$0")/.."
[ $# -eq 1 ] || { echo "usage: $0 VERSION" >&2; exit 2; }
version=$1
wrong=0
# says FILE PATTERN: the file has a line with the pattern.
says() {
  grep -qE -- "$2" "$1" && return 0
  echo "$1 does not say $version" >&2
  wrong=1
}
quoted=${version//./\\.}
says CMakeLists.txt "^project\(kelvaron VERSION $quoted "
says CHANGELOG.md "^## $quoted \([0-9]{4}-[0-9]{2}-[0-9]{2}\)$"
released=$(sed -n "s/^## $quoted (\(.*\))$/\1/p" CHANGELOG.md)
says packaging/kelvaron.metainfo.xml "<release version=\"$quoted\" date=\"$released\"/>"
says debian/changelog "^kelvaron \($quoted-[0-9]+\) "
for page in packaging/man/*; do says "$page" "\"Kelvaron $quoted\""; done
[ -z "$(git status --porcelain)" ] || { echo "there are changes that are not checked in" >&2; wrong=1; }
[ "$wrong" -eq 0 ] || exit 1

out=build/release-$version
rm -rf "$out"
mkdir -p "$out"
# The archive is the same whenever it is made: its times are those of the commit.
git archive --format=tar --prefix="kelvaron-$version/" HEAD | gzip -9n >"$out/kelvaron-$version.tar.gz"
./run packages >/dev/null
cp build/packages/*.deb "$out"
rm -f "$out"/*-dbgsym_*
(cd "$out" && sha256sum -- * >SHA256SUMS && cat SHA256SUMS)
