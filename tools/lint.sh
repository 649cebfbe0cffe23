#!/usr/bin/env bash
# clang-format and clang-tidy over the whole tree, and what the packages are made of; all must be
# silent.
set -u
cd "$(dirname "$0")/.." || exit 1

mapfile -t files < <(git ls-files '*.cpp' '*.h')
clang-format --dry-run --Werror "${files[@]}" || exit 1
echo "clang-format: ${#files[@]} files are clean"

# What AUTOMOC and AUTORCC make has to be there, so the release build comes first.
cmake --preset release -DKELVARON_TESTS=ON -DKELVARON_BENCH=ON >/dev/null || exit 1
cmake --build --preset release >/dev/null || exit 1
mapfile -t sources < <(git ls-files '*.cpp')
present=()
for source in "${sources[@]}"; do
  grep -qF "/$source\"" build/release/compile_commands.json && present+=("$source")
done
printf '%s\0' "${present[@]}" |
  xargs -0 -n 4 -P "$(nproc)" clang-tidy -p build/release --quiet \
    --extra-arg=-Wno-unknown-warning-option 2>/dev/null || exit 1
echo "clang-tidy: ${#present[@]} files are clean"

desktop-file-validate assets/kelvaron.desktop || exit 1
appstreamcli validate --no-net packaging/kelvaron.metainfo.xml || exit 1
for page in packaging/man/*; do
  told=$(man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 >/dev/null)
  [ -z "$told" ] || { echo "$page: $told"; exit 1; }
done
systemd-analyze security --offline=true --threshold=20 build/release/kelvaron-server.service \
  >/dev/null || { echo "kelvaron-server.service is rated above 2.0"; exit 1; }
bash -n packaging/kelvaron-server.bash-completion || exit 1
tools/packages_build.sh >/dev/null || exit 1
lintian --fail-on error,warning build/packages/*.changes || exit 1
echo "desktop entry, metadata, manual pages, unit and packages are clean"
