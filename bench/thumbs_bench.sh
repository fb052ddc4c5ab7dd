#!/usr/bin/env bash
# Thumbnails of 252 pixels from 12-megapixel phone JPEGs: Orvelle's builder (decode at reduced
# scale, orientation, the cache's compressed and decoded forms) on the machine's cores, against
# `vipsthumbnail -s 252` (Debian's libvips-tools) on the same files with as many processes.
# The target: at least vipsthumbnail's rate.
#   bench/thumbs_bench.sh [COUNT]   (default 500; needs build/bench/orvelle-thumbs-bench)
set -euo pipefail
source "$(dirname "$0")/common.sh"
count=${1:-500}
bench=${ORV_THUMBS_BENCH:-$root/build/bench/orvelle-thumbs-bench}
command -v vipsthumbnail > /dev/null || { echo "vipsthumbnail is missing: apt-get install libvips-tools" >&2; exit 1; }
work=$(mktemp -d /tmp/orvelle-thumbs-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT

# Phone JPEGs of 12 megapixels (4000 x 3000 or so) from the corpus, copied COUNT times.
mapfile -t phones < <(find "$corpus" -type f \( -iname '*.jpg' -o -iname '*.jpeg' \) -size +1M -print0 \
  | xargs -0 exiftool -q -q -n -p '$ImageWidth $ImageHeight $Directory/$FileName' 2> /dev/null \
  | awk '$1 * $2 >= 11500000 && $1 * $2 <= 12600000 { $1 = ""; $2 = ""; sub(/^  /, ""); print }' | sort)
[ ${#phones[@]} -gt 0 ] || { echo "no 12-megapixel JPEGs under $corpus" >&2; exit 1; }
mkdir -p "$work/photos" "$work/vips"
for ((i = 0; i < count; i++)); do
  cp "${phones[i % ${#phones[@]}]}" "$work/photos/$(printf 'IMG_%05d.jpg' "$i")"
done
cat "$work"/photos/* > /dev/null
cores=$(nproc)

read -r built failed ours < <("$bench" "$work/photos" 252 "$cores")
start=$(date +%s.%N)
find "$work/photos" -name '*.jpg' -print0 \
  | xargs -0 -n $(( (count + cores - 1) / cores )) -P "$cores" vipsthumbnail -s 252 -o "$work/vips/%s.jpg"
end=$(date +%s.%N)
vips=$(awk -v a="$start" -v b="$end" 'BEGIN { print b - a }')

echo "files:          $count copies of ${#phones[@]} 12-megapixel phone JPEGs, $cores cores"
echo "orvelle:        $(rate "$count" "$ours") thumbnails/s ($ours s, $built built, $failed failed)"
echo "vipsthumbnail:  $(rate "$count" "$vips") thumbnails/s ($vips s)"
awk -v a="$vips" -v b="$ours" 'BEGIN { printf "orvelle / vips rate: %.2fx (target: at least 1x)\n", a / b }'
