#!/usr/bin/env bash
# Shows every file that clang-format would lay out otherwise, and what clang-tidy says of the product's sources.
# Usage: scripts/lint.sh [FILE...]   (without files: everything; clang-tidy then takes a good half hour)
set -euo pipefail
source "$(dirname "$0")/help.sh"
cd "$(dirname "$0")/.."

scripts/install-packages.sh
folders=(framework shell document effects engine plugin platform tools tests benchmarks fuzz scripts)
if [ $# -gt 0 ]; then
  files=("$@")
else
  mapfile -t files < <(git ls-files -- "${folders[@]}" | grep -E '\.(h|cpp)$')
fi

status=0
for file in "${files[@]}"; do
  clang-format --dry-run --Werror "$file" 2>/dev/null || { echo "$file: clang-format would change it"; status=1; }
done

# Precompiled headers of another compiler are of no use to clang-tidy.
cmake --preset clang -DVORTEL_PRECOMPILE=OFF >/dev/null
for file in "${files[@]}"; do
  case $file in
    tests/* | benchmarks/* | fuzz/* | scripts/* | *.h) ;;
    *) clang-tidy -p build/clang --quiet "$file" 2>/dev/null || status=1 ;;
  esac
done
exit $status
