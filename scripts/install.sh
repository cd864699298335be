#!/usr/bin/env bash
# Builds the release bundle and puts it where hosts look for VST 3 plug-ins. Installing again replaces what is there.
# Usage: scripts/install.sh [--prefix FOLDER]   the folder that gets Vortel2.vst3; default ~/.vst3
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/scripts/bundle-folder.sh"
folder=$(bundle_folder "$@")

cd "$root"
scripts/install-packages.sh
cmake --preset release >/dev/null
cmake --build --preset release --target vortel-vst3 >&2

# The whole bundle is made beside its place and then changes places with the old one, so that a host finds the one or
# the other, never parts of both; a host that runs keeps what it has loaded.
mkdir -p "$folder"
target=$folder/Vortel2.vst3
staged=$(mktemp -d "$folder/.Vortel2.XXXXXX")
put_back() {
  [ -e "$target" ] || [ ! -e "$staged/old" ] || mv -T "$staged/old" "$target"
  rm -rf "$staged"
}
trap put_back EXIT
cp -R build/release/Vortel2.vst3 "$staged/new"
find "$staged/new" -name '*.debug' -delete
chmod -R u+rwX,go+rX,go-w "$staged/new"
[ ! -e "$target" ] || mv -T "$target" "$staged/old"
mv -T "$staged/new" "$target"
echo "Installed $target"
