# SPDX-License-Identifier: GPL-3.0-or-later
# For scripts/hosts.sh: packages, the home that hosts get, what they play, and how a check reports.

rate=48000
program=10
settings=(1=0.85 3=0.45 53=0.3 191=0.7)

install_missing() {
  local package missing=() as_root=()
  for package in "$@"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get -qq update
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq install --yes --no-install-recommends "${missing[@]}" \
    </dev/null >&2
}

# From here on all programs live in a temporary home. It stays where something went wrong.
make_home() {
  home=$(mktemp -d)
  trap 'if [ $? -eq 0 ]; then rm -rf "$home"; else echo "hosts.sh: the files are in $home" >&2; fi' EXIT
  unset XDG_CONFIG_HOME XDG_CACHE_HOME XDG_DATA_HOME XDG_STATE_HOME VST3_PATH
  export HOME=$home
  export LXVST_PATH=$home/.vst
  mkdir "$home/.vst3" "$home/.vst"
}

# A drum loop, and the factory bank with another program chosen: as a file, as a host's chunk and as a preset.
make_song() {
  local side
  sox /usr/share/lmms/samples/beats/jungle01.ogg -b 32 -e floating-point "$home/drums.wav" rate "$rate" repeat 3
  for side in 1 2; do
    sox "$home/drums.wav" "$home/drums-$(cut -c $side <<<LR).wav" remix $side
  done
  frames=$(soxi -s "$home/drums.wav")
  sed "s/<ActiveProgramIndex>0</<ActiveProgramIndex>$program</" resources/DefaultBank.v2bnk >"$home/bank.v2bnk"
  "$vortel2" bank chunk "$home/bank.v2bnk" "$home/chunk"
  presets=$home/.vst3/presets/Brightfen/Vortel2
  mkdir -p "$presets"
  scripts/hosts/preset.py "$home/chunk" "$presets/From a chunk.vstpreset"
}

version_of() {
  dpkg-query -W -f '${Package} ${Version}' "$1"
}

# fail TEXT [FILE]: says what went wrong, with what the host said, and ends the script.
fail() {
  [ $# -lt 2 ] || tail -n 30 "$2" >&2
  echo "hosts.sh: $1" >&2
  exit 1
}

# run_host FILE COMMAND...: what the host says goes into FILE. A minute and a half is ten times what is needed.
run_host() {
  local said=$1
  shift
  (timeout 90 "$@"; exit $?) >"$said" 2>&1 </dev/null
}

# is_equal FILE FILE [FRAMES]: as compare, which says more
is_equal() {
  python3 scripts/hosts/compare.py "$home/$1" "$home/$2" "${3:-0}" >/dev/null 2>&1
}

# compare WHAT FILE FILE [FRAMES]: FRAMES of the second are left out at its beginning
compare() {
  local result
  result=$(python3 scripts/hosts/compare.py "$home/$2" "$home/$3" "${4:-0}" 2>&1) || fail "$1: $result"
  echo "  $1: $result"
}

# compare_parameters FILE FILE: two lists that hosts have printed
compare_parameters() {
  local list
  for list in "$1" "$2"; do
    grep '^parameter [0-9]* [A-Z]*:' "$home/$list.txt" >"$home/$list-values.txt" || fail "no parameters" "$home/$list.txt"
  done
  diff "$home/$1-values.txt" "$home/$2-values.txt" >"$home/diff.txt" ||
    fail "parameters differ after reopening" "$home/diff.txt"
  echo "  $(wc -l <"$home/$1-values.txt") parameters are the same after reopening"
}

# is_changed FILE: equality of two outputs means little if both are the input
is_changed() {
  ! is_equal "$1" drums.wav || fail "the plug-in did nothing to the loop"
}
