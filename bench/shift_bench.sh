#!/usr/bin/env bash
# Shifts every date of 2,000 JPEGs by one hour, once with orvelle-cli and once with exiftool on an
# identical copy, and prints both times and their ratio. Target: orvelle-cli at least 50x faster.
#   bench/shift_bench.sh [BUILD_DIR]     (default: build)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cli="${1:-$root/build}/src/orvelle-cli"
corpus="${ORV_CORPUS_DIR:-$root/../shared/corpus}"
count=2000

[ -x "$cli" ] || { echo "no orvelle-cli at $cli; build first" >&2; exit 2; }
command -v exiftool >/dev/null || { echo "exiftool is missing (Debian: libimage-exiftool-perl)" >&2; exit 2; }
mapfile -t jpegs < <(find "$corpus" -type f \( -iname '*.jpg' -o -iname '*.jpeg' \) | sort)
[ ${#jpegs[@]} -gt 0 ] || { echo "no JPEGs in $corpus" >&2; exit 2; }

work=$(mktemp -d /tmp/orvelle-shift-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/orvelle" "$work/exiftool" "$work/home"
for ((i = 0; i < count; i++)); do
  source=${jpegs[i % ${#jpegs[@]}]}
  cp "$source" "$work/orvelle/$(printf '%04d' "$i")-$(basename "$source")"
done
cp -p "$work/orvelle/." "$work/exiftool/" -r
sync

seconds() { date +%s.%N; }

start=$(seconds)
# Files without date tags cannot take a new creation date here and are reported; that is no
# failure of the benchmark.
HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share" \
  "$cli" shift --by +1:00:00 "$work/orvelle" >/dev/null || [ $? -eq 1 ]
orvelle=$(awk -v a="$(seconds)" -v b="$start" 'BEGIN { print a - b }')

start=$(seconds)
exiftool -q -q -m -AllDates+=1 -overwrite_original "$work/exiftool" >/dev/null || true
exiftool_time=$(awk -v a="$(seconds)" -v b="$start" 'BEGIN { print a - b }')

printf 'files:     %d JPEGs (%d corpus files, cycled)\n' "$count" "${#jpegs[@]}"
printf 'orvelle:   %.3f s\n' "$orvelle"
printf 'exiftool:  %.3f s\n' "$exiftool_time"
printf 'ratio:     %.1fx (target: at least 50x)\n' "$(awk -v a="$exiftool_time" -v b="$orvelle" 'BEGIN { print a / b }')"
