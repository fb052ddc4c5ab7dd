#!/usr/bin/env bash
# Scan rate of orvelle-cli next to exiftool's on the same folder of real JPEGs, warm cache.
#   bench/scan_bench.sh [COUNT]     (default 5000 files; needs a built build/src/orvelle-cli)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cli=${ORV_CLI:-$root/build/src/orvelle-cli}
corpus=${ORV_CORPUS_DIR:-$root/../shared/corpus}
count=${1:-5000}
work=$(mktemp -d /tmp/orvelle-scan-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT

mapfile -t sources < <(find "$corpus" -type f \( -iname '*.jpg' -o -iname '*.jpeg' \) | sort)
[ ${#sources[@]} -gt 0 ] || { echo "no JPEGs under $corpus" >&2; exit 1; }
for ((i = 0; i < count; i++)); do
  cp "${sources[i % ${#sources[@]}]}" "$work/$(printf 'IMG_%05d.jpg' "$i")"
done

rate() { awk -v n="$1" -v s="$2" 'BEGIN { printf "%.0f", n / s }'; }
seconds() { local start end; start=$(date +%s.%N); "$@" > /dev/null 2>&1 || true; end=$(date +%s.%N); awk -v a="$start" -v b="$end" 'BEGIN { print b - a }'; }

cat "$work"/* > /dev/null                 # warm the cache for both
"$cli" scan --json "$work" > /dev/null    # and the binary
ours=$(seconds "$cli" scan --json "$work")
theirs=$(seconds exiftool -fast2 -j -time:all -gps:all "$work")

echo "files:                $count JPEGs copied from the corpus, $(nproc) cores"
echo "orvelle-cli scan:     $(rate "$count" "$ours") files/s ($ours s)"
echo "exiftool -fast2:      $(rate "$count" "$theirs") files/s ($theirs s)"
awk -v a="$ours" -v b="$theirs" 'BEGIN { printf "ratio:                %.1fx\n", b / a }'
