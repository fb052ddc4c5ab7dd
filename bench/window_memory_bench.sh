#!/usr/bin/env bash
# The window's memory with COUNT items: right after the import, after every thumbnail was shown
# once, and after two saves of a shifted folder (see window_memory_bench.cpp). The target: at most
# 1.3 times the import figure plus the thumbnail cache's bound, however many saves ran.
#   bench/window_memory_bench.sh [COUNT...]   (default 20000 100000; needs
#                                             build/bench/orvelle-window-memory-bench)
# The saved folder holds SAVED copies of corpus JPEGs (default 4000; a save writes them, so
# each is its own file); the rest are hard links to corpus JPEGs in a second folder, which no
# save touches, so 100,000 items take little room. ORV_THUMB_CACHE_MB sets the cache's bound.
set -euo pipefail
source "$(dirname "$0")/common.sh"
bench=${ORV_WINDOW_MEMORY_BENCH:-$root/build/bench/orvelle-window-memory-bench}
saved=${SAVED:-4000}
counts=("$@")
[ ${#counts[@]} -gt 0 ] || counts=(20000 100000)
work=$(mktemp -d /tmp/orvelle-window-memory-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT

# Photos of at least 400 pixels with an original date, so that the save needs no question and
# every thumbnail is a real 252-pixel one.
mapfile -t sources < <(find "$corpus" -type f \( -iname '*.jpg' -o -iname '*.jpeg' \) -size +30k -size -400k -print0 \
  | xargs -0 exiftool -q -q -p '$DateTimeOriginal#|$ImageWidth|$Directory/$FileName' 2> /dev/null \
  | awk -F'|' '$1 != "" && $2 >= 400 { print $3 }' | sort)
[ ${#sources[@]} -gt 0 ] || { echo "no dated JPEGs of 400 pixels under $corpus" >&2; exit 1; }
mkdir -p "$work/saved"
for ((i = 0; i < saved; i++)); do
  cp "${sources[i % ${#sources[@]}]}" "$work/saved/$(printf 'IMG_%05d.jpg' "$i")"
done

export XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
echo "corpus JPEGs: ${#sources[@]}, $(nproc) cores"
for count in "${counts[@]}"; do
  rm -rf "$work/other" && mkdir -p "$work/other"
  printf '%s\n' "${sources[@]}" | python3 -c '
import os, sys
sources = [line.rstrip("\n") for line in sys.stdin]
target, count = sys.argv[1], int(sys.argv[2])
for i in range(count):
    os.link(sources[i % len(sources)], os.path.join(target, "DSC_%06d.jpg" % i))
' "$work/other" $((count - saved))
  echo "--- $count items: $saved copies saved twice, $((count - saved)) hard links"
  "$bench" "$work/saved" "$work/other" 2 2> /dev/null
done
