#!/usr/bin/env bash
# Takes the bundle out again. Preferences, banks and the log stay where they are. Nothing there is no failure.
# Usage: scripts/uninstall.sh [--prefix FOLDER]   the folder that holds Vortel2.vst3; default ~/.vst3
set -euo pipefail
source "$(dirname "$0")/bundle-folder.sh"
target=$(bundle_folder "$@")/Vortel2.vst3

if [ ! -e "$target" ]; then
  echo "Nothing to remove at $target"
  exit 0
fi
# Out of the hosts' sight first, in one step.
removed=$(mktemp -d "$(dirname "$target")/.Vortel2.XXXXXX")
mv -T "$target" "$removed/old"
rm -rf "$removed"
echo "Removed $target"
