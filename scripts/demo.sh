#!/usr/bin/env bash
# Builds the program, renders its drum loop once through each effect and once through all ten, draws a picture of each
# render, says what became of the loop, and makes a picture of the editor.
# Usage: scripts/demo.sh [FOLDER]   where the files go; default build/demo
# The first run installs the Debian packages of packages.txt that are missing, as root or through sudo, and builds for some
# minutes; later runs take seconds. Nothing outside FOLDER and build/ is written.
set -euo pipefail
source "$(dirname "$0")/help.sh"
if [ $# -gt 1 ] || [[ ${1:-} == -* ]]; then
  echo "usage: scripts/demo.sh [FOLDER]" >&2
  exit 2
fi
folder=$(realpath -m "${1:-$(dirname "$0")/../build/demo}")
cd "$(dirname "$0")/.."
source scripts/effect-recipes.sh

scripts/install-packages.sh
cmake --preset release >/dev/null
cmake --build --preset release --target vortel2

vortel2=build/release/bin/vortel2
mkdir -p "$folder"
"$vortel2" render --quiet --demo-dry "$folder/loop.wav"
processed=()
for effect in "${effects[@]}" all; do
  recipe "$effect"
  file=$folder/loop-$effect.wav
  "$vortel2" render --quiet --demo "$file" --plot "${file%.wav}.png" "${recipe[@]}"
  processed+=("$file")
done

echo
echo "before:"
"$vortel2" levels "$folder/loop.wav"
echo "after, each with a picture beside it:"
"$vortel2" levels "${processed[@]}"

recipe all
"$vortel2" snapshot "$folder/editor.png" --scale 2 "${recipe[@]}"
echo
echo "$folder/editor.png shows the editor with the pattern of loop-all.wav."
echo "To see it move, and to hear it: $vortel2 open"
