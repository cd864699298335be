#!/usr/bin/env bash
# Installs a finished build below a folder of its own, as a packager would, and looks at what is there.
# Usage: install-test.sh BUILD_FOLDER
set -euo pipefail
build=$1
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
export XDG_STATE_HOME=$root/state XDG_CONFIG_HOME=$root/config

fail() {
  echo "$*" >&2
  exit 1
}

DESTDIR=$root/image cmake --install "$build" --prefix /usr >/dev/null
cd "$root/image/usr"

strays=$(find "$root/image" -type f -not -path "$PWD/bin/*" -not -path "$PWD/lib/vst*/*" -not -path "$PWD/share/*")
[ -z "$strays" ] || fail "outside the usual folders: $strays"
[ "$(find . -type f | wc -l)" -lt 1000 ] || fail "far more files than there can be"
[ -z "$(find . -name '*.debug')" ] || fail "debug symbols are nothing for users"

for file in bin/vortel2 share/man/man1/vortel2.1 share/bash-completion/completions/vortel2 \
  share/fish/vendor_completions.d/vortel2.fish share/applications/vortel2.desktop \
  share/icons/hicolor/scalable/apps/vortel2.svg share/metainfo/example.brightfen.vortel2.metainfo.xml \
  share/doc/vortel2/copyright share/doc/vortel2/LICENSE share/vortel2/DefaultBank.v2bnk \
  lib/vst3/Vortel2.vst3/Contents/Resources/moduleinfo.json; do
  [ -s "$file" ] || fail "$file is missing"
done
compgen -G 'share/zsh/*/_vortel2' >/dev/null || fail "zsh gets no completions"
[ -s lib/vst/Vortel2.so ] || fail "the VST 2 library is missing"
compgen -G 'lib/vst3/Vortel2.vst3/Contents/*-linux/Vortel2.so' >/dev/null || fail "the bundle has no binary"
diff -r -x moduleinfo.json share/vortel2 lib/vst3/Vortel2.vst3/Contents/Resources || fail "the bundle's resources differ"

# The pages' links to each other and to their pictures.
cd share/doc/vortel2
for page in README.md docs/*.md; do
  while read -r link; do
    [ -e "$(dirname "$page")/$link" ] || fail "$page: no $link"
  done < <(grep -oE '\]\((docs/|images/|[A-Za-z-]+\.md|LICENSE)[^)]*\)' "$page" | sed 's/^](//; s/[)#].*//')
done

# The installed program finds what it needs where it was installed.
cd "$root"
image/usr/bin/vortel2 snapshot picture.png
[ -s picture.png ] || fail "no picture"
grep -qF "$root/image/usr/share/vortel2/" state/Vortel2/Vortel2.log || fail "resources were taken from elsewhere"
