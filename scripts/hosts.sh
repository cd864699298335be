#!/usr/bin/env bash
# Plays the plug-in in hosts, without a screen and in a home of its own: as VST 3 and as VST 2 in Ardour, as VST 3 in a small
# host of the classes that many hosts are built on. Each scans it, plays a drum loop through it, saves, reopens and plays again; both outputs must
# be what vortel2 renders with the same settings, sample by sample.
# Usage: scripts/hosts.sh [BUNDLE]   a VST 3 bundle; default: the release build, made here
set -euo pipefail
source "$(dirname "$0")/help.sh"
bundle=${1:+$(realpath "$1")}
cd "$(dirname "$0")/.."
source scripts/hosts/common.sh

scripts/install-packages.sh
install_missing ardour juce-modules-source-data libfreetype-dev libjpeg-dev libpng-dev libsox-fmt-base libx11-dev \
  lmms-common python3 sox zlib1g-dev
cmake --preset release >/dev/null
cmake --build --preset release --target vortel2 >&2
vortel2=$PWD/build/release/bin/vortel2

make_home
scripts/install.sh >&2
if [ -n "$bundle" ]; then
  rm -rf "$HOME/.vst3/Vortel2.vst3"
  cp -R "$bundle" "$HOME/.vst3/Vortel2.vst3"
fi
# A host that finds its notes about the bundle no younger than the bundle scans again.
touch -d '2000-01-01' "$HOME"/.vst3/Vortel2.vst3/Contents/*/*.so "$HOME/.vst/Vortel2.so"

make_song
for host in ardour juce; do
  source "scripts/hosts/$host.sh"
done
echo "All hosts agree."
