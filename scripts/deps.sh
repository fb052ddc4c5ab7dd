#!/usr/bin/env bash
# Installs what Orvelle needs to build, test and run on Debian 12, skipping what is present.
set -euo pipefail

packages=(
  cmake ninja-build g++ ccache pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-l10n-tools qt6-tools-dev qt6-translations-l10n qt6-image-formats-plugins libgl-dev
  qt6-multimedia-dev
  zlib1g-dev libheif-dev libraw-dev
  libavformat-dev libavcodec-dev libswscale-dev libavutil-dev
  libimage-exiftool-perl
  libvips-tools ffmpeg
  libgtest-dev libgmock-dev libbenchmark-dev
  clang libclang-rt-14-dev
  xvfb xauth
  python3 tzdata
  libtimezonemap-data
  libicu-dev
  help2man librsvg2-bin desktop-file-utils appstream dpkg-dev
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  sudo_cmd=()
  [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
  "${sudo_cmd[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
