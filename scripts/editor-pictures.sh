#!/usr/bin/env bash
# Draws docs/images/editor*.png anew: the editor as the manual shows it, from scripts of mouse events.
# Usage: scripts/editor-pictures.sh
set -euo pipefail
source "$(dirname "$0")/help.sh"
cd "$(dirname "$0")/.."

scripts/install-packages.sh
cmake --preset release >/dev/null
cmake --build --preset release --target vortel2

vortel2=build/release/bin/vortel2
pattern=(--scale 2 --bank resources/DefaultBank.v2bnk --program-index 15 --scene 42 --trigger host)
"$vortel2" snapshot docs/images/editor.png "${pattern[@]}" --script - <<'SCRIPT'
# the Retrigger's panel, and a step that plays
move 310 458
click left
play 2.6
SCRIPT
"$vortel2" snapshot docs/images/editor-drag.png "${pattern[@]}" --script - <<'SCRIPT'
# an effect on its way to another place
move 25 230
press left
drag 25 320
SCRIPT
"$vortel2" snapshot docs/images/editor-gater.png "${pattern[@]}" --gater-steps 1,0.1,0.7,0.4,0.9,0.2,1,0.5 --script - <<'SCRIPT'
move 740 458
click left
SCRIPT
du -ch docs/images/editor*.png
