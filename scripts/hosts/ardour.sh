# SPDX-License-Identifier: GPL-3.0-or-later
# Ardour's part of scripts/hosts.sh.

# Ardour hands song positions over in whole ticks, 1920 to a beat. At 48 kHz and this tempo each of its blocks begins on a
# tick, so nothing is lost of the position.
tempo=117.1875
# An export begins with two seconds of silence in blocks of 1024. The transport stands, but runs in the rest that is no
# whole block, so that the song position of that block is negative; the loop begins with what its cycle has left.
lead_in=$((2 * rate))
lead_in_blocks=$((lead_in / 1024))
lead_in_rest=$((lead_in % 1024))
late=4

scan_with_ardour() {
  local scanner wanted
  scanner=$(compgen -G '/usr/lib/ardour*/ardour-vst3-scanner')
  LD_LIBRARY_PATH=$(dirname "$scanner") run_host "$home/scan.txt" "$scanner" -f -v "$home/.vst3/Vortel2.vst3" ||
    fail "Ardour's scanner refuses the bundle" "$home/scan.txt"
  for wanted in 'Found Plugin: Vortel2' 'n_inputs="2" n_outputs="2"' 'n_midi_inputs="1"'; do
    grep -qF "$wanted" "$home/scan.txt" || fail "Ardour's scanner does not say: $wanted" "$home/scan.txt"
  done
  echo "  scanned: two inputs, two outputs, one MIDI input"
}

# Now and then this exporter aborts in its own clean-up at the end, also without any plug-in in the session; and on a
# busy machine it sometimes starts its transport so that all song positions are four samples late. Then it gets another
# go: only if its file is what a render gives that is told those positions, sample by sample.
export_with_ardour() {
  local try status
  for try in 1 2 3 4 5; do
    status=0
    run_host "$home/export.txt" ardour7-export -b float -o "$home/$1.wav" "$home/session" session || status=$?
    if [ "$status" -ge 128 ]; then
      echo "  (Ardour's exporter aborted, try $try)"
    elif [ "$status" -eq 0 ] && is_equal "$1.wav" late.wav "$lead_in"; then
      echo "  (Ardour's exporter began $late samples late, and so did the plug-in, try $try)"
    else
      break
    fi
  done
  [ "$status" -eq 0 ] || fail "Ardour cannot export" "$home/export.txt"
}

play_in_ardour() {
  local lua=scripts/hosts/ardour.lua
  run_host "$home/make.txt" ardour7-lua "$lua" make "$home/session" "$home/drums" "$rate" "$frames" "$tempo" \
    "${settings[@]}" || fail "Ardour cannot make the session" "$home/make.txt"
  export_with_ardour first
  run_host "$home/reopen.txt" ardour7-lua "$lua" reopen "$home/session" "$rate" ||
    fail "Ardour cannot reopen the session" "$home/reopen.txt"
  export_with_ardour second
}

# render_like_an_export FILE SAMPLES: so many samples late
render_like_an_export() {
  local blocks setting options=()
  for setting in "${settings[@]}"; do
    options+=(--param "$setting")
  done
  blocks=$(printf '1024,%.0s' $(seq $lead_in_blocks))$lead_in_rest,$((1024 - lead_in_rest))
  blocks+=$(printf ',1024%.0s' $(seq $((frames / 1024 + 1))))
  "$vortel2" render --quiet "$home/padded.wav" "$home/$1" --bank "$home/bank.v2bnk" --tempo "$tempo" \
    --position "$(python3 -c "print(-($lead_in_rest + $2) * $tempo / 60 / $rate)")" --block "$blocks" \
    --stopped --play-at "$(python3 -c "print(($lead_in_blocks - 0.5) * 1024 / $rate)")" "${options[@]}"
}

echo "$(version_of ardour)"
scan_with_ardour
sox "$home/drums.wav" "$home/padded.wav" pad ${lead_in}s
render_like_an_export ours.wav 0
render_like_an_export late.wav $late
play_in_ardour
compare_parameters make reopen
compare "export against the export after reopening" first.wav second.wav
compare "export against vortel2 render" first.wav ours.wav "$lead_in"
is_changed first.wav
