#!/usr/bin/env bash
# Memory per imported item: the peak resident size of importing COUNT files in the window
# (`orvelle --import-and-quit`: list, source and strip built, thumbnails not yet), minus that of
# importing an empty folder, divided by the count. Beside it the same figure of
# `orvelle-cli scan` (text and JSON) on the same files. The target: at most 1.5 KB per item.
#   bench/import_memory_bench.sh [COUNT]   (default 100000; the files are hard links to a few
#                                           small corpus JPEGs, so they take no room)
set -euo pipefail
source "$(dirname "$0")/common.sh"
count=${1:-100000}
work=$(mktemp -d /tmp/orvelle-memory-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT

mkdir -p "$work/photos" "$work/empty"
mapfile -t sources < <(find "$corpus" -type f \( -iname '*.jpg' -o -iname '*.jpeg' \) -size +0 -size -200k | sort)
[ ${#sources[@]} -gt 0 ] || { echo "no small JPEGs under $corpus" >&2; exit 1; }
printf '%s\n' "${sources[@]}" | python3 -c '
import os, sys
sources = [line.rstrip("\n") for line in sys.stdin]
target, count = sys.argv[1], int(sys.argv[2])
for i in range(count):
    os.link(sources[i % len(sources)], os.path.join(target, "IMG_%06d.jpg" % i))
' "$work/photos" "$count"

export XDG_CONFIG_HOME=$work/config
mkdir -p "$XDG_CONFIG_HOME/orvelle"
# No question stops the run, and no thumbnail is built in the background.
printf '[General]\nskipEmptyTagImportOptions=1\nisAlwaysShowOptionsDisabled=1\nautoBGThumbGeneration=0\n' \
  > "$XDG_CONFIG_HOME/orvelle/orvelle.conf"
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}

# peak_kb COMMAND...: the peak resident size of one run in KB.
peak_kb() { /usr/bin/time -f '%M' "$@" 2>&1 > /dev/null | tail -1; }

empty=$(peak_kb "$app" --import-and-quit "$work/empty")
full=$(peak_kb "$app" --import-and-quit "$work/photos")
cli_empty=$(peak_kb "$cli" scan "$work/empty")
cli_full=$(peak_kb "$cli" scan "$work/photos")
json_full=$(peak_kb "$cli" scan --json "$work/photos")

echo "files:                $count hard links to small corpus JPEGs"
echo "window, empty start:  $empty KB peak"
echo "window, $count:  $full KB peak"
awk -v f="$full" -v e="$empty" -v n="$count" 'BEGIN { printf "window per item:      %.2f KB (target: at most 1.5 KB)\n", (f - e) / n }'
awk -v f="$cli_full" -v e="$cli_empty" -v n="$count" \
  'BEGIN { printf "orvelle-cli scan per item: %.2f KB\n", (f - e) / n }'
awk -v f="$json_full" -v e="$cli_empty" -v n="$count" \
  'BEGIN { printf "orvelle-cli scan --json per item: %.2f KB (streamed)\n", (f - e) / n }'
awk -v f="$full" -v e="$empty" -v cf="$cli_full" -v ce="$cli_empty" \
  'BEGIN { printf "window / cli scan:    %.2fx\n", (f - e) / (cf - ce) }'
