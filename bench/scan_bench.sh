#!/usr/bin/env bash
# Scan rate of orvelle-cli next to exiftool's on the same folder of real JPEGs, warm cache.
#   bench/scan_bench.sh [COUNT]     (default 5000 files; needs a built build/src/orvelle-cli)
set -euo pipefail
source "$(dirname "$0")/common.sh"
count=${1:-5000}
work=$(mktemp -d /tmp/orvelle-scan-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT

fill_with_jpegs "$work" "$count"
"$cli" scan --json "$work" > /dev/null    # warm the binary
ours=$(seconds "$cli" scan --json "$work")
theirs=$(seconds exiftool -fast2 -j -time:all -gps:all "$work")

echo "files:                $count JPEGs copied from the corpus, $(nproc) cores"
echo "orvelle-cli scan:     $(rate "$count" "$ours") files/s ($ours s)"
echo "exiftool -fast2:      $(rate "$count" "$theirs") files/s ($theirs s)"
awk -v a="$ours" -v b="$theirs" 'BEGIN { printf "ratio:                %.1fx\n", b / a }'
