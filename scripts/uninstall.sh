#!/usr/bin/env bash
# Takes the plug-in out again. Preferences, banks and the log stay where they are. Nothing there is no failure.
# Usage: scripts/uninstall.sh [--prefix FOLDER]   the folder that holds all of it; default ~/.vst3 and ~/.vst
set -euo pipefail
source "$(dirname "$0")/help.sh"
source "$(dirname "$0")/install-folders.sh"
install_folders "$@"
trap 'rm -rf "${staged[@]}"' EXIT

# Out of the hosts' sight first, in one step.
for target in "$vst3_folder/Vortel2.vst3" "$vst2_folder/Vortel2.so" "$vst2_folder/Vortel2.res"; do
  if [ ! -e "$target" ]; then
    echo "Nothing to remove at $target"
    continue
  fi
  stage "$(dirname "$target")"
  mv -T "$target" "${staged[-1]}/old"
  echo "Removed $target"
done
