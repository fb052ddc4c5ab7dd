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

# Beside the rates, the processor time each contender spent (user and system, all threads and
# processes): on a busy machine the wall time follows the share each one gets of the cores.
read -r built failed ours < <(/usr/bin/time -f '%U %S' -o "$work/ours.cpu" "$bench" "$work/photos" 252 "$cores")
start=$(date +%s.%N)
/usr/bin/time -f '%U %S' -o "$work/vips.cpu" bash -c 'find "$1" -name "*.jpg" -print0 \
  | xargs -0 -n "$2" -P "$3" vipsthumbnail -s 252 -o "$4/%s.jpg"' _ \
  "$work/photos" $(( (count + cores - 1) / cores )) "$cores" "$work/vips"
end=$(date +%s.%N)
vips=$(awk -v a="$start" -v b="$end" 'BEGIN { print b - a }')
cpu_seconds() { awk '{ print $1 + $2 }' "$1"; }
ours_cpu=$(cpu_seconds "$work/ours.cpu")
vips_cpu=$(cpu_seconds "$work/vips.cpu")

echo "files:          $count copies of ${#phones[@]} 12-megapixel phone JPEGs, $cores cores"
echo "orvelle:        $(rate "$count" "$ours") thumbnails/s ($ours s, $built built, $failed failed)"
echo "vipsthumbnail:  $(rate "$count" "$vips") thumbnails/s ($vips s)"
awk -v a="$vips" -v b="$ours" 'BEGIN { printf "orvelle / vips rate: %.2fx (target: at least 1x)\n", a / b }'
awk -v a="$vips_cpu" -v b="$ours_cpu" -v n="$count" \
  'BEGIN { printf "processor time:  orvelle %.1f ms, vipsthumbnail %.1f ms per thumbnail; vips / orvelle %.2fx\n", 1000 * b / n, 1000 * a / n, a / b }'
