#!/usr/bin/env bash
# clang-format and clang-tidy over the whole tree, and what the packages are made of; all must be
# silent. `lint.sh code` leaves the packages out.
set -u
cd "$(dirname "$0")/.." || exit 1

mapfile -t files < <(git ls-files '*.cpp' '*.h')
clang-format --dry-run --Werror "${files[@]}" || exit 1
echo "clang-format: ${#files[@]} files are clean"

# All files of a library or program are one unit, which costs a sixth of what they cost one by one, as
# most of the time goes into headers, and finds a name that two of them have. A unit names its files,
# so the filter lets through what it finds in them.
cmake --preset lint >/dev/null || exit 1
mapfile -t generated < <(ninja -C build/lint -t targets all | sed -n 's/^\([^ ]*_autogen\): phony$/\1/p')
ninja -C build/lint "${generated[@]}" >/dev/null || exit 1
database=build/lint/compile_commands.json
mapfile -t units < <(sed -n 's/^ *"file": "\(.*\/unity_[^"]*\)"$/\1/p' "$database")
read_files=$(grep -h '^#include' "${units[@]}" | grep -vc autogen)
printf '%s\0' "${units[@]}" |
  xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/lint --quiet \
    --header-filter="^$PWD/[a-z]+/.*\.(h|cpp)\$" --checks=-bugprone-suspicious-include 2>/dev/null ||
  exit 1
echo "clang-tidy: $read_files files are clean"
# The same units from the last file to the first: none leans on one that came before it.
sed -n 's/^ *"command": "\(.*\) -o .* -c \(.*\/unity_[^"]*\)",$/\1 \2/p' "$database" |
  sed 's/\\\(.\)/\1/g; s/\(.*\) \(.*\)/[ $(grep -c "^#include" \2) -lt 2 ] || tac \2 | \1 -fsyntax-only -x c++ -/' |
  xargs -d '\n' -n 1 -P "$(nproc)" bash -c || exit 1
echo "files compiled together: names are unique in each of ${#units[@]} libraries and programs"
[ "${1:-}" != code ] || exit 0

desktop-file-validate assets/kelvaron.desktop || exit 1
appstreamcli validate --no-net packaging/kelvaron.metainfo.xml || exit 1
for page in packaging/man/*; do
  told=$(man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 >/dev/null)
  [ -z "$told" ] || { echo "$page: $told"; exit 1; }
done
systemd-analyze security --offline=true --threshold=20 build/lint/kelvaron-server.service \
  >/dev/null || { echo "kelvaron-server.service is rated above 2.0"; exit 1; }
bash -n packaging/kelvaron-server.bash-completion || exit 1
tools/packages_build.sh >/dev/null || exit 1
lintian --fail-on error,warning build/packages/*.changes || exit 1
echo "desktop entry, metadata, manual pages, unit and packages are clean"
