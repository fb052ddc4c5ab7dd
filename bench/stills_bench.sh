#!/usr/bin/env bash
# 100 stills from one corpus movie: one orvelle-cli still run (one open of the movie, every
# still with its date, place and camera written by exiftool) beside 100 runs of
# `ffmpeg -ss POS -i MOVIE -frames:v 1` for the same positions (pixels only), warm cache.
#   bench/stills_bench.sh [COUNT] [MOVIE]   (default 100 stills from gpmf-parser/samples/karma.mp4,
#                                           the longest movie of the corpus; needs ffmpeg)
set -euo pipefail
source "$(dirname "$0")/common.sh"
count=${1:-100}
source_movie=${2:-$corpus/gpmf-parser/samples/karma.mp4}
work=$(mktemp -d /tmp/orvelle-stills-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT

movie="$work/movie.${source_movie##*.}"
cp "$source_movie" "$movie"
duration=$(ffprobe -v error -show_entries format=duration -of csv=p=0 "$movie")
mapfile -t positions < <(awk -v n="$count" -v d="$duration" 'BEGIN { for (i = 0; i < n; i++) printf "%.3f\n", i * (d - 0.1) / n }')
list=$(IFS=,; echo "${positions[*]}")

ours_run() { rm -rf "$work/movie Stills"; "$cli" still --at "$list" "$movie"; }
ffmpeg_runs() {
  mkdir -p "$work/ffmpeg"
  local i
  for i in "${!positions[@]}"; do
    ffmpeg -v error -y -ss "${positions[i]}" -i "$movie" -frames:v 1 -q:v 5 "$work/ffmpeg/$i.jpg"
  done
}
ours_run > /dev/null 2>&1   # warm the binaries and the cache
ours=$(seconds ours_run)
made=$(find "$work/movie Stills" -name '*.jpg' | wc -l)
theirs=$(seconds ffmpeg_runs)

echo "movie:                 ${source_movie#"$corpus"/} ($(ffprobe -v error -select_streams v:0 -show_entries stream=width,height -of csv=s=x:p=0 "$movie"), $duration s), $(nproc) cores"
echo "orvelle-cli still:     $made stills in $ours s (with metadata)"
echo "ffmpeg -ss -frames:v 1: $count runs in $theirs s (pixels only)"
awk -v a="$ours" -v b="$theirs" 'BEGIN { printf "ratio:                 %.1fx\n", b / a }'
