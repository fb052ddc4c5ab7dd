#!/usr/bin/env bash
# Builds the Debian package of Orvelle into build/ and proves that it holds what an install
# needs: both programs, the menu entry, the icons, the AppStream data, the MIME type, the man
# page, the bash completion and the German translation, with Debian's package names as dependencies.
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
for package in libqt6core6 libqt6widgets6 libimage-exiftool-perl qt6-translations-l10n; do
  grep -q "$package" <<< "$depends" || { echo "missing dependency: $package" >&2; status=1; }
done
# The German translation travels inside the window's program: its --help speaks German there.
unpacked=$(mktemp -d)
trap 'rm -rf "$unpacked"' EXIT
dpkg-deb --extract "$deb" "$unpacked"
LANG=de_DE.UTF-8 LANGUAGE= LC_ALL= QT_QPA_PLATFORM=offscreen "$unpacked/usr/bin/orvelle" --help 2>/dev/null |
  grep -q "Bringt Daten" || { echo "the package's orvelle has no German translation" >&2; status=1; }
[ $status -eq 0 ] && echo "$deb"
exit $status
