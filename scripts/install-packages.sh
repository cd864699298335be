#!/usr/bin/env bash
# Installs the Debian packages of packages.txt that are not there yet. Asks nothing.
set -euo pipefail
cd "$(dirname "$0")/.."

missing=()
while read -r package; do
  [ -n "$package" ] || continue
  state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$state" = installed ] || missing+=("$package")
done <packages.txt
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "These packages are missing and can be installed by root only: ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi
echo "Installing ${missing[*]}" >&2
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq install --yes --no-install-recommends "${missing[@]}" \
  </dev/null >&2
