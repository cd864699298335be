# SPDX-License-Identifier: GPL-3.0-or-later
# The part of scripts/hosts.sh that plays in scripts/hosts/juce. That host lends no run loop and asks for no editor, so
# the plug-in's clock is its idle parameter.

host=build/hosts/juce-host
# Told to the host in whole frames and to vortel2 in seconds. Parameter 1 changes where a block begins, in either size.
played=(1@192000=0.4 note@240048=1)
played_options=(--automate 1@4=0.4 --note 1@5.001)

build_juce_host() {
  cmake -S scripts/hosts/juce -B build/hosts -G Ninja >"$home/configure.txt" 2>&1 ||
    fail "cannot configure the host" "$home/configure.txt"
  cmake --build build/hosts >"$home/build.txt" 2>&1 || fail "cannot build the host" "$home/build.txt"
}

# run_juce NAME INSTANCES ARGUMENTS...: makes NAME.wav. Its classes connect a plug-in that is component and controller in
# one to itself, twice, and report the second refusal; nothing else of what they report is expected.
run_juce() {
  local name=$1 instances=$2
  shift 2
  run_host "$home/$name.txt" env -u DISPLAY "$host" "$@" || fail "the host fails" "$home/$name.txt"
  grep -vE '^(plug-in|takes|parameter|JUCE v[0-9.]*$)' "$home/$name.txt" >"$home/$name-reports.txt" || true
  [ "$(sort "$home/$name-reports.txt" | uniq -c | xargs)" = "$instances kResultFalse" ] ||
    fail "the host's classes report other things than usual" "$home/$name-reports.txt"
}

check_scan() {
  local wanted
  for wanted in 'plug-in Vortel2 by Brightfen, 2.1.5, Fx, 2 in, 2 out' 'takes MIDI: yes'; do
    grep -qxF "$wanted" "$1" || fail "the host does not say: $wanted" "$1"
  done
}

# play_in_juce BLOCK
play_in_juce() {
  local block=$1 setting options=() common
  common=("$home/.vst3/Vortel2.vst3" "$home/drums.wav")
  run_juce "made-$block" 1 make "${common[@]}" "$home/made-$block.wav" "$home/state-$block" "$block" "$juce_tempo" \
    "$presets/From a chunk.vstpreset" "${settings[@]}" "${played[@]}"
  run_juce "reopened-$block" 2 reopen "${common[@]}" "$home/reopened-$block.wav" "$home/state-$block" "$block" \
    "$juce_tempo" 2 "${played[@]}"
  for setting in "${settings[@]}"; do
    options+=(--param "$setting")
  done
  "$vortel2" render --quiet "$home/drums.wav" "$home/rendered-$block.wav" --bank "$home/bank.v2bnk" \
    --tempo "$juce_tempo" --block "$block" "${options[@]}" "${played_options[@]}"
}

juce_tempo=101.5
echo "a host of $(version_of juce-modules-source-data)"
build_juce_host
for block in 512 480; do
  play_in_juce $block
  check_scan "$home/made-$block.txt"
  compare_parameters "made-$block" "reopened-$block"
  compare "blocks of $block: first against reopened" "made-$block.wav" "reopened-$block.wav"
  compare "blocks of $block: first against reopened, second instance" "made-$block.wav" "reopened-$block-2.wav"
  compare "blocks of $block: first against vortel2 render" "made-$block.wav" "rendered-$block.wav"
  is_changed "made-$block.wav"
done
