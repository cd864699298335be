#!/usr/bin/env bash
# Builds the factory bank from its source, measures each scene, and writes the bank's page with a picture per program.
# Usage: scripts/factory-bank.sh
set -euo pipefail
source "$(dirname "$0")/help.sh"
cd "$(dirname "$0")/.."

scripts/install-packages.sh
cmake --preset release >/dev/null
cmake --build --preset release --target vortel2
vortel2=build/release/bin/vortel2
source=resources/factory-bank.txt
bank=resources/DefaultBank.v2bnk
page=docs/factory-bank.md

"$vortel2" bank build "$source" "$bank"
mkdir -p build/factory-bank
for program in $(seq 0 15); do
  name=$(printf "program-%02d" $((program + 1)))
  "$vortel2" render --quiet --demo "build/factory-bank/$name.wav" --plot "docs/images/$name.png" \
    --bank "$bank" --program-index "$program" --note 0@0
done

cat >"$page" <<'TEXT'
# The factory bank

Sixteen programs, from subtle to destroying. Each has a scene 0, which shows its idea, and variations on the keys from note
36 (the lowest C of many keyboards) upward: send the plug-in notes and play the scenes. Every scene keeps about the level of
the drums that go in.

A program's trigger mode says what a key does. *Host*: the pattern follows the song, and a key picks the scene. *Gate*: a
scene runs while its key is held. *Latch*: a key starts a scene, which goes on until the host stops.

The pictures show scene 0 at work on the drum loop of `vortel2 render --demo`: what goes in, the blocks that play, what
comes out. `vortel2 render --demo out.wav --bank resources/DefaultBank.v2bnk --program-name "Bar-End Fills" --scene 37` lets you hear any
other. The programs are numbered from 1 here, as hosts show them; `--program-index` counts them from 0.
[programs.md](programs.md) tells how to keep programs of your own.
TEXT
awk '
  /^program / { name = substr($0, 9); ++number; remark = ""; inProgram = 1
    mode = "Host"; next }
  inProgram && /^  # / { remark = remark (remark == "" ? "" : "\n") substr($0, 5); next }
  inProgram && /^  .*--trigger gate/ { mode = "Gate" }
  inProgram && /^  .*--trigger latch/ { mode = "Latch" }
  /^scene / {
    if (inProgram) {
      printf "\n## %d. %s\n\n%s\n\n![Scene 0 of %s](images/program-%02d.png)\n\n", number, name, remark, name, number
      printf "Trigger mode: %s.\n\n| scene | what it does |\n|---|---|\n", mode
      inProgram = 0
    }
    scene = $2; sub(/^scene [0-9]+ /, ""); printf "| %s | %s |\n", scene, $0
  }
' "$source" >>"$page"

"$vortel2" bank levels "$bank"
