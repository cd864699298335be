#!/usr/bin/env bash
# Prints instructions per stereo frame for every case of vortel2-count, or per frame of an editor for those of
# vortel2-frame-count (--editor: the toolkit's views) or vortel2-editor-count (--whole-editor), counted with callgrind:
# the difference of two lengths divided by the frames between them, so that set-up does not count. Repeatable to the
# digit.
# Usage: scripts/count-instructions.sh [--editor|--whole-editor] [CASE...]
set -euo pipefail
source "$(dirname "$0")/help.sh"
cd "$(dirname "$0")/.."

count=build/release/bin/vortel2-count
short=22528 # frames; both are whole numbers of the blocks of 256
long=67584
if [ "${1:-}" = --editor ]; then
  shift
  count=build/release/bin/vortel2-frame-count
  short=100
  long=500
elif [ "${1:-}" = --whole-editor ]; then
  shift
  count=build/release/bin/vortel2-editor-count
  short=10
  long=50
fi
scripts/install-packages.sh
cmake --preset release >/dev/null
cmake --build --preset release --target "$(basename "$count")" >&2
out=$(mktemp)
trap 'rm -f "$out"' EXIT

instructions() { # case, frames
  valgrind --tool=callgrind --callgrind-out-file="$out" "$count" "$1" "$2" >/dev/null 2>&1
  awk '/^(summary|totals):/ { print $2; exit }' "$out"
}

if [ $# -eq 0 ]; then
  mapfile -t cases < <("$count" --list)
else
  cases=("$@")
fi

printf '%-48s %14s\n' case 'instr./frame'
for case in "${cases[@]}"; do
  a=$(instructions "$case" "$short")
  b=$(instructions "$case" "$long")
  awk -v name="$case" -v a="$a" -v b="$b" -v n=$((long - short)) 'BEGIN { printf "%-48s %14.2f\n", name, (b - a) / n }'
done
