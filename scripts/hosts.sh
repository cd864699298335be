#!/usr/bin/env bash
# Tries the bundle in hosts that Debian has. So far: Ardour's scanner, in a home of its own.
# Usage: scripts/hosts.sh [BUNDLE]   default: the release build, made here
set -euo pipefail
bundle=${1:+$(realpath "$1")}
cd "$(dirname "$0")/.."

scanner=$(compgen -G '/usr/lib/ardour*/ardour-vst3-scanner' || true)
if [ -z "$scanner" ]; then
  as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get -qq update
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq install --yes --no-install-recommends ardour >&2
  scanner=$(compgen -G '/usr/lib/ardour*/ardour-vst3-scanner')
fi

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
mkdir "$home/.vst3"
if [ -n "$bundle" ]; then
  cp -R "$bundle" "$home/.vst3/Vortel2.vst3"
else
  scripts/install.sh --prefix "$home/.vst3" >&2
fi

echo "Scanner of $(dpkg-query -W -f '${Package} ${Version}' ardour):"
env -u XDG_CONFIG_HOME -u XDG_CACHE_HOME -u XDG_STATE_HOME HOME="$home" \
  LD_LIBRARY_PATH="$(dirname "$scanner")" "$scanner" -f -v "$home/.vst3/Vortel2.vst3" >"$home/scan.txt" 2>&1 ||
  { cat "$home/scan.txt" >&2; exit 1; }
for wanted in 'Found Plugin: Vortel2' 'n_inputs="2" n_outputs="2"' 'n_midi_inputs="1"'; do
  grep -qF "$wanted" "$home/scan.txt" || { echo "The scanner does not say: $wanted" >&2; cat "$home/scan.txt" >&2; exit 1; }
done
grep -E 'Found Plugin|<VST3Info' "$home/scan.txt"
