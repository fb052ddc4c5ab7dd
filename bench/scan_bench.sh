#!/usr/bin/env bash
# Scan rate of orvelle-cli next to exiv2's and exiftool's on the same folder of real phone and
# camera JPEGs (copies of the corpus files of at least 1 MB), warm cache, and the system calls
# each makes per file.
#   bench/scan_bench.sh [COUNT]     (default 5000 files; needs a built build/src/orvelle-cli)
# Targets on 2 cores: 15,000 files/s, 4x exiv2, 80x exiftool, at most 8 system calls per file.
set -euo pipefail
source "$(dirname "$0")/common.sh"
count=${1:-5000}
work=$(mktemp -d /tmp/orvelle-scan-bench.XXXXXX)
trap 'rm -rf "$work" "$work.json" "$work.strace" "$work.sh"' EXIT

fill_with_jpegs "$work" "$count" +1M
files=("$work"/*.jpg)
exiv2_keys=(-K Exif.Photo.DateTimeOriginal -K Exif.Photo.DateTimeDigitized -K Exif.Image.DateTime
            -K Exif.GPSInfo.GPSLatitude)
run_ours() { "$cli" scan --json "$work"; }
run_json_only() { "$cli" scan --json "$work" > "$work.json"; }
# exiv2 takes the files as arguments; xargs keeps each command line within the system's limit.
run_exiv2() { printf '%s\0' "${files[@]}" | xargs -0 exiv2 -q -pt "${exiv2_keys[@]}"; }
run_exiftool() { exiftool -fast2 -j -time:all -gps:all "$work"; }

# syscalls COMMAND...: system calls per file of one run, from strace's summary ("-" when the
# run left none).
syscalls() {
  rm -f "$work.strace"
  strace -c -f -o "$work.strace" "$@" > /dev/null 2>&1 || true
  [ -s "$work.strace" ] || { echo "-"; return; }
  awk -v n="$count" '$NF == "total" { printf "%.1f", $(NF - 2) / n }' "$work.strace"
}
# A peer's run as a script of its own: the list of files is far longer than one argument may be.
peer_script() {
  { declare -p files exiv2_keys work; declare -f "run_$1"; echo "run_$1"; } > "$work.sh"
}

run_ours > /dev/null    # warm the binary
ours=$(seconds run_ours)
echo "files:                $count JPEGs of 1 MB or more copied from the corpus, $(nproc) cores"
printf '%-22s%8s files/s %8s s  %6s calls/file\n' "orvelle-cli scan:" "$(rate "$count" "$ours")" "$ours" \
  "$(syscalls "$cli" scan --json "$work")"
# Writing the JSON must not be the bottleneck: the same scan with its output to a file.
written=$(seconds run_json_only)
printf '%-22s%8s files/s %8s s\n' "  JSON to a file:" "$(rate "$count" "$written")" "$written"
for peer in exiv2 exiftool; do
  if ! command -v "$peer" > /dev/null; then
    echo "$peer:                not installed"
    continue
  fi
  theirs=$(seconds "run_$peer")
  peer_script "$peer"
  printf '%-22s%8s files/s %8s s  %6s calls/file  ours %sx\n' "$peer:" "$(rate "$count" "$theirs")" "$theirs" \
    "$(syscalls bash "$work.sh")" \
    "$(awk -v a="$ours" -v b="$theirs" 'BEGIN { printf "%.1f", b / a }')"
done
