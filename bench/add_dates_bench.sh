#!/usr/bin/env bash
# Adds the missing date tags to 500 JPEGs that have none, once with orvelle-cli (one exiftool
# child serves the whole run, one action per file) and once with a single
# `exiftool -AllDates=... -overwrite_original` over an identical copy, and prints both times and
# their ratio. Target: orvelle-cli within 1.5x of the single exiftool call.
#   bench/add_dates_bench.sh [BUILD_DIR]     (default: build)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cli="${1:-$root/build}/src/orvelle-cli"
source "$root/bench/common.sh"
count=${ORV_BENCH_COUNT:-500}

[ -x "$cli" ] || { echo "no orvelle-cli at $cli; build first" >&2; exit 2; }
command -v exiftool >/dev/null || { echo "exiftool is missing (Debian: libimage-exiftool-perl)" >&2; exit 2; }

work=$(mktemp -d /tmp/orvelle-add-dates-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/home"
fill_with_jpegs "$work/orvelle" "$count" +1k
# Files with no dates at all: every EXIF and XMP tag goes.
exiftool -q -q -m -overwrite_original -EXIF:all= -XMP:all= "$work/orvelle" >/dev/null || true
cp -rp "$work/orvelle" "$work/exiftool"
sync

now() { date +%s.%N; }

start=$(now)
HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share" \
  "$cli" shift --by +0:00 --add-missing-dates "$work/orvelle" >/dev/null 2>"$work/orvelle.err" \
  || { echo "orvelle-cli failed:" >&2; head -5 "$work/orvelle.err" >&2; }
orvelle=$(awk -v a="$(now)" -v b="$start" 'BEGIN { print a - b }')

start=$(now)
exiftool -q -q -m -overwrite_original '-AllDates=2024:05:01 10:00:00' "$work/exiftool" >/dev/null || true
exiftool_time=$(awk -v a="$(now)" -v b="$start" 'BEGIN { print a - b }')

added=$(exiftool -q -q -m -if '$ExifIFD:DateTimeOriginal' -p '$FileName' "$work/orvelle" 2>/dev/null | wc -l)
printf 'files:     %d JPEGs without dates (%d given a DateTimeOriginal by orvelle-cli)\n' "$count" "$added"
printf 'orvelle:   %.3f s\n' "$orvelle"
printf 'exiftool:  %.3f s (one call)\n' "$exiftool_time"
printf 'ratio:     %.2fx of exiftool (target: at most 1.5x)\n' "$(awk -v a="$exiftool_time" -v b="$orvelle" 'BEGIN { print b / a }')"
