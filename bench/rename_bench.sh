#!/usr/bin/env bash
# Renames 5,000 JPEGs by their capture date, once with orvelle-cli (the import, the checked
# plan, the journal and two passes of renames) and once with exiftool's
# '-FileName<DateTimeOriginal' over an identical copy, and prints both times and their ratio.
# The old name follows the date in both, so that no two files meet one name.
# Target: orvelle-cli at least 20x as fast as exiftool.
#   bench/rename_bench.sh [BUILD_DIR]     (default: build)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cli="${1:-$root/build}/src/orvelle-cli"
source "$root/bench/common.sh"
count=${ORV_BENCH_COUNT:-5000}

[ -x "$cli" ] || { echo "no orvelle-cli at $cli; build first" >&2; exit 2; }
command -v exiftool >/dev/null || { echo "exiftool is missing (Debian: libimage-exiftool-perl)" >&2; exit 2; }

work=$(mktemp -d /tmp/orvelle-rename-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/home" "$work/orvelle"
# Only JPEGs with a capture date, so that both name every file.
mapfile -t sources < <(exiftool -q -q -if '$DateTimeOriginal' -p '$Directory/$FileName' -ext jpg -r "$corpus" | sort)
[ ${#sources[@]} -gt 0 ] || { echo "no dated JPEGs under $corpus" >&2; exit 1; }
for ((i = 0; i < count; i++)); do
  cp "${sources[i % ${#sources[@]}]}" "$work/orvelle/$(printf 'IMG_%05d.jpg' "$i")"
done
cp -rp "$work/orvelle" "$work/exiftool"
cat "$work"/orvelle/* "$work"/exiftool/* > /dev/null   # warm the cache for both alike
sync

now() { date +%s.%N; }

start=$(now)
HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share" \
  "$cli" rename --template '{year}{month}{day}-{hour}{minute}{second} {name}' "$work/orvelle" \
  >/dev/null 2>"$work/orvelle.err" || { echo "orvelle-cli failed:" >&2; head -5 "$work/orvelle.err" >&2; }
orvelle=$(awk -v a="$(now)" -v b="$start" 'BEGIN { print a - b }')

start=$(now)
exiftool -q -q -d '%Y%m%d-%H%M%S' '-FileName<${DateTimeOriginal} %f.%e' "$work/exiftool" >/dev/null 2>&1 || true
exiftool_time=$(awk -v a="$(now)" -v b="$start" 'BEGIN { print a - b }')

same=$(comm -12 <(ls "$work/orvelle") <(ls "$work/exiftool") | wc -l)
printf 'files:     %d JPEGs renamed by date (%d names the same in both)\n' "$count" "$same"
printf 'orvelle:   %.3f s\n' "$orvelle"
printf 'exiftool:  %.3f s (one call)\n' "$exiftool_time"
printf 'ratio:     %.1fx as fast as exiftool (target: at least 20x)\n' \
  "$(awk -v a="$exiftool_time" -v b="$orvelle" 'BEGIN { print a / b }')"
