#!/usr/bin/env bash
# Formats what is staged, or with arguments these files, and runs clang-tidy over the sources among
# them. As a hook:  ln -s ../../tools/check.sh .git/hooks/pre-commit
set -u
cd "$(git rev-parse --show-toplevel)" || exit 1
if [ $# -gt 0 ]; then
  files=("$@")
else
  mapfile -t files < <(git diff --cached --name-only --diff-filter=d -- '*.cpp' '*.h')
fi
[ ${#files[@]} -eq 0 ] && exit 0
if ! clang-format --dry-run -Werror "${files[@]}" 2>/dev/null; then
  clang-format -i "${files[@]}"
  echo "Formatted; look at it, stage it and commit again." >&2
  exit 1
fi
database=build/release
[ -f "$database/compile_commands.json" ] || exit 0
sources=()
for file in "${files[@]}"; do
  grep -q "/$file\"" "$database/compile_commands.json" && sources+=("$file")
done
[ ${#sources[@]} -eq 0 ] || clang-tidy --quiet --extra-arg=-Wno-unknown-warning-option -p "$database" "${sources[@]}"
