#!/usr/bin/env bash
# Plays the bundle in hosts that Debian has, without a screen and in a home of its own: Ardour scans it; a session made by
# script plays a drum loop through it, is exported, reopened, saved and exported again, and both exports must be what
# vortel2 renders with the same settings, sample by sample.
# Usage: scripts/hosts.sh [BUNDLE]   default: the release build, made here
set -euo pipefail
bundle=${1:+$(realpath "$1")}
cd "$(dirname "$0")/.."
source scripts/hosts/common.sh

scripts/install-packages.sh
install_missing ardour libsox-fmt-base lmms-common python3 sox
cmake --preset release >/dev/null
cmake --build --preset release --target vortel2 >&2
vortel2=$PWD/build/release/bin/vortel2

make_home
if [ -n "$bundle" ]; then
  cp -R "$bundle" "$HOME/.vst3/Vortel2.vst3"
else
  scripts/install.sh --prefix "$HOME/.vst3" >&2
fi
# A host that finds its notes about the bundle no younger than the bundle scans again.
touch -d '2000-01-01' "$HOME"/.vst3/Vortel2.vst3/Contents/*/*.so

source scripts/hosts/ardour.sh
echo "All hosts agree."
