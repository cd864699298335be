#!/usr/bin/env bash
# Builds the plug-in in release form and puts it where hosts look: the VST 3 bundle into ~/.vst3, the VST 2 library and its
# resources into ~/.vst. Installing again replaces what is there.
# Usage: scripts/install.sh [--prefix FOLDER]   a folder that gets all of it instead
set -euo pipefail
source "$(dirname "$0")/help.sh"
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/scripts/install-folders.sh"
install_folders "$@"

cd "$root"
scripts/install-packages.sh
cmake --preset release >/dev/null
cmake --build --preset release --target vortel-vst2 vortel-vst3 >&2

target=
put_back() {
  local folder
  for folder in "${staged[@]}"; do
    [ -e "$target" ] || [ ! -e "$folder/old" ] || mv -T "$folder/old" "$target"
    rm -rf "$folder"
  done
}
trap put_back EXIT

# put SOURCE FOLDER: made whole beside its place, then it changes places with the old one, so that a host finds the one or
# the other, never parts of both; a host that runs keeps what it has loaded.
put() {
  local folder
  target=$2/$(basename "$1")
  mkdir -p "$2"
  stage "$2"
  folder=${staged[-1]}
  cp -R "$1" "$folder/new"
  find "$folder/new" -name '*.debug' -delete
  chmod -R u+rwX,go+rX,go-w "$folder/new"
  [ ! -e "$target" ] || mv -T "$target" "$folder/old"
  mv -T "$folder/new" "$target"
  rm -rf "$folder"
}

put build/release/Vortel2.vst3 "$vst3_folder"
echo "Installed $vst3_folder/Vortel2.vst3"
put build/release/Vortel2.res "$vst2_folder"
put build/release/Vortel2.so "$vst2_folder"
echo "Installed $vst2_folder/Vortel2.so"
