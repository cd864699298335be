#!/usr/bin/env bash
# Builds the last commit twice, in two folders, without ccache, and compares what came out byte by byte, debug symbols too.
# Usage: scripts/reproduce.sh [TARGET...]   default: all that is installed, which takes twice a whole build
set -euo pipefail
source "$(dirname "$0")/help.sh"
cd "$(dirname "$0")/.."
targets=("${@:-shipped}")

scripts/install-packages.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
folders=("$work/one" "$work/another/with-a-longer-name")
for folder in "${folders[@]}"; do
  mkdir -p "$folder"
  git archive HEAD | tar x -C "$folder"
  (
    cd "$folder"
    export CCACHE_DISABLE=1
    cmake --preset release -DVORTEL_BUILD_TESTS=OFF -DVORTEL_BUILD_BENCHMARKS=OFF >/dev/null
    cmake --build --preset release --target "${targets[@]}" | tail -n 1
  )
done

compared=0
for made in bin lib Vortel2.so Vortel2.so.debug Vortel2.vst3 resource-files described; do
  [ -e "${folders[0]}/build/release/$made" ] || continue
  diff -r "${folders[0]}/build/release/$made" "${folders[1]}/build/release/$made"
  compared=$((compared + $(find "${folders[0]}/build/release/$made" -type f | wc -l)))
done
[ "$compared" -gt 0 ] || { echo "Nothing was made" >&2; exit 1; }
echo "$compared files, all equal"
