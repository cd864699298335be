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

# scan_with_ardour SCANNER FILE TEXT...
scan_with_ardour() {
  local scanner file=$2 wanted
  scanner=$(compgen -G "/usr/lib/ardour*/$1")
  LD_LIBRARY_PATH=$(dirname "$scanner") run_host "$home/scan.txt" "$scanner" -f -v "$file" ||
    fail "Ardour's scanner refuses $file" "$home/scan.txt"
  shift 2
  for wanted in "$@" 'n_inputs="2" n_outputs="2"' 'n_midi_inputs="1"'; do
    grep -qF "$wanted" "$home/scan.txt" || fail "Ardour's scanner does not say: $wanted" "$home/scan.txt"
  done
  echo "  scanned: two inputs, two outputs, one MIDI input"
}

# Now and then this exporter aborts in its own clean-up at the end, also without any plug-in in the session; and on a
# busy machine it sometimes starts its transport so that all song positions are four samples late. Then it gets another
# go: only if its file is what a render gives that is told those positions, sample by sample.
# export_with_ardour SESSION NAME
export_with_ardour() {
  local try status
  for try in 1 2 3 4 5; do
    status=0
    run_host "$home/export.txt" ardour7-export -b float -o "$home/$2.wav" "$home/$1" "$1" || status=$?
    if [ "$status" -ge 128 ]; then
      echo "  (Ardour's exporter aborted, try $try)"
    elif [ "$status" -eq 0 ] && is_equal "$2.wav" late.wav "$lead_in"; then
      echo "  (Ardour's exporter began $late samples late, and so did the plug-in, try $try)"
    else
      break
    fi
  done
  [ "$status" -eq 0 ] || fail "Ardour cannot export" "$home/export.txt"
}

# in_ardour WHAT SESSION ARGUMENTS...: runs a part of the script and lists the parameters in SESSION-WHAT.txt.
in_ardour() {
  local said=$home/$2-$1.txt
  run_host "$said" ardour7-lua scripts/hosts/ardour.lua "${1%-*}" "$home/$2" "${@:3}" ||
    fail "Ardour cannot $1 the session" "$said"
}

# Ardour gives a program of VST 2 to the plug-in when its own window's clock comes to it. So that session gets the bank as
# its saved chunk.
make_in_ardour() {
  local song=("$home/drums" "$rate" "$frames" "$tempo")
  if [ "$1" = VST3 ]; then
    in_ardour make VST3 VST3 "From a chunk" "${song[@]}" "${settings[@]}"
  else
    in_ardour make LXVST LXVST "" "${song[@]}"
    scripts/hosts/set-chunk.py "$home/LXVST/LXVST.ardour" "$program" "$home/chunk"
    in_ardour reopen-made LXVST "$rate" "${settings[@]}"
    mv "$home/LXVST-reopen-made.txt" "$home/LXVST-make.txt"
  fi
}

# play_in_ardour FORMAT
play_in_ardour() {
  render_for "$1"
  make_in_ardour "$1"
  export_with_ardour "$1" "$1-first"
  in_ardour reopen "$1" "$rate"
  export_with_ardour "$1" "$1-second"
  compare_parameters "$1-make" "$1-reopen"
  compare "$1: export against the export after reopening" "$1-first.wav" "$1-second.wav"
  compare "$1: export against vortel2 render" "$1-first.wav" ours.wav "$lead_in"
  is_changed "$1-first.wav"
}

# render_like_an_export FILE POSITION PLAY: the song position of the first block that plays, in samples, and the time in
# seconds from which on a block plays
render_like_an_export() {
  local blocks setting options=()
  for setting in "${settings[@]}"; do
    options+=(--param "$setting")
  done
  blocks=$(printf '1024,%.0s' $(seq $lead_in_blocks))$lead_in_rest,$((1024 - lead_in_rest))
  blocks+=$(printf ',1024%.0s' $(seq $((frames / 1024 + 1))))
  "$vortel2" render --quiet "$home/padded.wav" "$home/$1" --bank "$home/bank.v2bnk" --tempo "$tempo" \
    --position "$(python3 -c "print($2 * $tempo / 60 / $rate)")" --block "$blocks" \
    --stopped --play-at "$3" "${options[@]}"
}

# VST 3 plug-ins are told that the transport runs in the rest, VST 2 plug-ins are not.
render_for() {
  local position=0 play=2
  if [ "$1" = VST3 ]; then
    position=-$lead_in_rest
    play=$(python3 -c "print(($lead_in_blocks - 0.5) * 1024 / $rate)")
  fi
  render_like_an_export ours.wav $position $play
  render_like_an_export late.wav $((position - late)) $play
}

echo "$(version_of ardour)"
scan_with_ardour ardour-vst3-scanner "$home/.vst3/Vortel2.vst3" 'Found Plugin: Vortel2'
scan_with_ardour ardour-vst-scanner "$home/.vst/Vortel2.so" "Found Plugin: '7qmk' Vortel2" 'has_editor="1"'
sox "$home/drums.wav" "$home/padded.wav" pad ${lead_in}s
play_in_ardour VST3
play_in_ardour LXVST
