#!/usr/bin/env bash
# Shifts every date of 500 real JPEGs (copies of the corpus files of at least 1 MB, as the scan
# benchmark takes them) by one hour, once with orvelle-cli and once with exiftool -AllDates+=1 on
# an identical copy, and prints both times, their ratio and the system calls per file of ours
# (strace -f -c, so the journal, the group commit and any exiftool child count too).
#   bench/shift_bench.sh [COUNT]     (default 500 files; needs a built build/src/orvelle-cli)
# Targets: at least 50x exiftool, at most 10 system calls per file.
set -euo pipefail
source "$(dirname "$0")/common.sh"
count=${1:-500}
work=$(mktemp -d /tmp/orvelle-shift-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT
command -v exiftool > /dev/null || { echo "exiftool is missing (Debian: libimage-exiftool-perl)" >&2; exit 2; }
command -v strace > /dev/null || { echo "strace is missing (Debian: strace)" >&2; exit 2; }

fill_with_jpegs "$work/orvelle" "$count" +1M
cp -a "$work/orvelle" "$work/exiftool"
cp -a "$work/orvelle" "$work/traced"
sync

# A home of its own: the journal and settings never touch the user's.
ours() {
  HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share" \
    "$cli" shift --by +1:00:00 "$1"
}
theirs() { exiftool -q -q -m -AllDates+=1 -overwrite_original "$work/exiftool"; }

orvelle_time=$(seconds ours "$work/orvelle")
exiftool_time=$(seconds theirs)
strace -f -c -o "$work/strace" env HOME="$work/home2" XDG_CONFIG_HOME="$work/home2/.config" \
  XDG_DATA_HOME="$work/home2/.local/share" "$cli" shift --by +1:00:00 "$work/traced" > /dev/null 2>&1 || true
calls=$(awk -v n="$count" '$NF == "total" { printf "%.1f", $(NF - 2) / n }' "$work/strace")

echo "files:     $count JPEGs of 1 MB or more copied from the corpus, $(nproc) cores"
printf 'orvelle:   %8.3f s  %6s calls/file (target: at most 10)\n' "$orvelle_time" "$calls"
printf 'exiftool:  %8.3f s\n' "$exiftool_time"
printf 'ratio:     %8.1fx (target: at least 50x)\n' "$(awk -v a="$exiftool_time" -v b="$orvelle_time" 'BEGIN { print a / b }')"
