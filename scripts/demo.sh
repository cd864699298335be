#!/usr/bin/env bash
# Builds the program, renders its drum loop and the same loop through the Retrigger, and says what became of it.
# Usage: scripts/demo.sh [FOLDER]   where the two files go; default build/demo
set -euo pipefail
folder=$(realpath -m "${1:-$(dirname "$0")/../build/demo}")
cd "$(dirname "$0")/.."

scripts/install-packages.sh
cmake --preset release >/dev/null
cmake --build --preset release --target vortel2

vortel2=build/release/bin/vortel2
mkdir -p "$folder"
dry=$folder/loop.wav
processed=$folder/loop-retriggered.wav

"$vortel2" render --demo-dry "$dry" --demo "$processed" \
  --steps 'RET=----*+++----*+*+' --param 'RET:Initial Speed=1 / 16th' --param 'RET:Final Speed=1 / 64th' \
  --param 'RET:Decay=30'

echo
echo "before: $("$vortel2" levels "$dry")"
echo "after:  $("$vortel2" levels "$processed")"
