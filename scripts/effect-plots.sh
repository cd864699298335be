#!/usr/bin/env bash
# Draws docs/images/effect-NAME.png anew, a picture of each effect at work on the demo loop.
# Usage: scripts/effect-plots.sh
set -euo pipefail
source "$(dirname "$0")/help.sh"
cd "$(dirname "$0")/.."
source scripts/effect-recipes.sh

scripts/install-packages.sh
cmake --preset release >/dev/null
cmake --build --preset release --target vortel2

sounds=$(mktemp -d)
trap 'rm -rf "$sounds"' EXIT
mkdir -p docs/images
for effect in "${effects[@]}"; do
  recipe "$effect"
  build/release/bin/vortel2 render --quiet --demo "$sounds/$effect.wav" --plot "docs/images/effect-$effect.png" "${recipe[@]}"
done
du -ch docs/images/effect-*.png
