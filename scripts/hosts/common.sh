# SPDX-License-Identifier: GPL-3.0-or-later
# For scripts/hosts.sh: packages, the home that hosts get, and how a check reports.

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

# From here on all programs live in a temporary home.
make_home() {
  home=$(mktemp -d)
  trap 'rm -rf "$home"' EXIT
  unset XDG_CONFIG_HOME XDG_CACHE_HOME XDG_DATA_HOME XDG_STATE_HOME VST3_PATH
  export HOME=$home
  mkdir "$home/.vst3"
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
