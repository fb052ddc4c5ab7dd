#!/usr/bin/env bash
# Builds the Debian package of Orvelle into build/ and proves that it holds what an install
# needs: both programs, the menu entry, the icons, the AppStream data, the MIME type, the man
# page and the bash completion, with Debian's package names as dependencies.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
"$root/scripts/deps.sh"
"$root/scripts/build.sh" "$build" -- orvelle orvelle-cli orvelle_man_page orvelle_icons
(cd "$build" && cpack -G DEB -C Release > cpack.log) || { cat "$build/cpack.log"; exit 1; }
deb=$(ls -t "$build"/orvelle_*.deb | head -1)

desktop-file-validate "$root/packaging/org.orvelle.Orvelle.desktop"
appstreamcli validate --no-net --explain "$root/packaging/org.orvelle.Orvelle.metainfo.xml" > /dev/null

contents=$(dpkg-deb --contents "$deb")
status=0
for path in ./usr/bin/orvelle ./usr/bin/orvelle-cli \
            ./usr/share/applications/org.orvelle.Orvelle.desktop \
            ./usr/share/icons/hicolor/scalable/apps/org.orvelle.Orvelle.svg \
            ./usr/share/icons/hicolor/48x48/apps/org.orvelle.Orvelle.png \
            ./usr/share/icons/hicolor/256x256/apps/org.orvelle.Orvelle.png \
            ./usr/share/metainfo/org.orvelle.Orvelle.metainfo.xml \
            ./usr/share/mime/packages/org.orvelle.Orvelle.xml \
            ./usr/share/man/man1/orvelle-cli.1.gz \
            ./usr/share/bash-completion/completions/orvelle-cli; do
  grep -q " $path\$" <<< "$contents" || { echo "missing from the package: $path" >&2; status=1; }
done
depends=$(dpkg-deb --field "$deb" Depends)
for package in libqt6core6 libqt6widgets6 libimage-exiftool-perl; do
  grep -q "$package" <<< "$depends" || { echo "missing dependency: $package" >&2; status=1; }
done
[ $status -eq 0 ] && echo "$deb"
exit $status
