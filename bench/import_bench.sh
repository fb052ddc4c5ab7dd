#!/usr/bin/env bash
# Headless import speed: a folder of 10,000 camera JPEGs copied from the corpus, imported by
# `orvelle-cli scan --json` (output discarded), reported in files per second. Run by hand:
#   bench/import_bench.sh [BUILD_DIR] [FILE_COUNT]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
count=${2:-10000}
cli=$build/src/orvelle-cli
corpus=${ORV_CORPUS_DIR:-$root/../shared/corpus}
[ -x "$cli" ] || { echo "no $cli; build first" >&2; exit 1; }

work=$(mktemp -d /tmp/orvelle-import-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT
mapfile -t sources < <(find "$corpus" -type f \( -iname '*.jpg' -o -iname '*.jpeg' \) -size +0 | sort)
[ ${#sources[@]} -gt 0 ] || { echo "no JPEGs under $corpus" >&2; exit 1; }
for ((i = 0; i < count; i++)); do
  cp "${sources[i % ${#sources[@]}]}" "$work/$(printf 'IMG_%05d.jpg' "$i")"
done
# The first run reads the files into the page cache, so the timed run measures the import, not the disk.
"$cli" scan --json "$work" > /dev/null || true
start=$(date +%s.%N)
"$cli" scan --json "$work" > /dev/null || true
end=$(date +%s.%N)
awk -v n="$count" -v s="$start" -v e="$end" -v src="${#sources[@]}" \
  'BEGIN { t = e - s; printf "orvelle-cli scan: %d files (copies of %d corpus JPEGs) in %.2f s: %.0f files/s\n", n, src, t, n / t }'
