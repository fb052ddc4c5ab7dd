#!/usr/bin/env bash
# Scan rate of orvelle-cli next to exiftool's on the same folder of the corpus's movies and HEIC
# stills, warm cache: only box headers and the few named values are read, never the media data.
#   bench/movie_scan_bench.sh [COUNT]     (default 2000 files; needs a built build/src/orvelle-cli)
set -euo pipefail
source "$(dirname "$0")/common.sh"
count=${1:-2000}
work=$(mktemp -d /tmp/orvelle-movie-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT

link_corpus_files "$work" "$count" mov mp4 heic
"$cli" scan --json "$work" > /dev/null    # warm the binary and the cache
exiftool -fast2 -j -time:all "$work" > /dev/null 2>&1 || true
ours=$(seconds "$cli" scan --json "$work")
theirs=$(seconds exiftool -fast2 -j -time:all -gps:all "$work")

echo "files:                $count MOV, MP4 and HEIC files from the corpus, $(nproc) cores"
echo "orvelle-cli scan:     $(rate "$count" "$ours") files/s ($ours s)"
echo "exiftool -fast2:      $(rate "$count" "$theirs") files/s ($theirs s)"
awk -v a="$ours" -v b="$theirs" 'BEGIN { printf "ratio:                %.1fx\n", b / a }'
