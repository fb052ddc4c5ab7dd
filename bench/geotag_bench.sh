#!/usr/bin/env bash
# Places by GPX tracks, measured twice:
#  1. 5,000 photos against a 100,000-point track: orvelle-cli geotag --dry-run beside exiftool
#     -geotag on identical copies (exiftool has no dry run: it writes), with their ratio.
#  2. Reading a GPX file of about 100 MB: time and peak memory of orvelle-cli beside the file
#     size, and beside the same run with a tiny track (the tool's own footprint); the reader alone
#     beside Qt's XML tokenizer alone on the same file (the floor QXmlStreamReader sets), and
#     beside exiftool reading the file's first 10 MB (all of it would take it minutes).
#   bench/geotag_bench.sh [BUILD_DIR]     (default: build; needs orvelle-cli and orvelle-gpx-bench)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cli="${1:-$root/build}/src/orvelle-cli"
gpx_bench="${1:-$root/build}/bench/orvelle-gpx-bench"
source "$root/bench/common.sh"
photos=5000
points=100000

[ -x "$cli" ] || { echo "no orvelle-cli at $cli; build first" >&2; exit 2; }
[ -x "$gpx_bench" ] || { echo "no orvelle-gpx-bench at $gpx_bench; build first" >&2; exit 2; }
command -v exiftool > /dev/null || { echo "exiftool is missing (Debian: libimage-exiftool-perl)" >&2; exit 2; }
[ -x /usr/bin/time ] || { echo "GNU time is missing (Debian: time)" >&2; exit 2; }
source_jpeg=$(find "$corpus" -type f -iname '*.jpg' -size +2k -size -200k | sort | head -n 1)
[ -n "$source_jpeg" ] || { echo "no JPEG in $corpus" >&2; exit 2; }

work=$(mktemp -d /tmp/orvelle-geotag-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/orvelle" "$work/exiftool" "$work/home" "$work/empty" "$work/base"
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_DATA_HOME="$work/home/.local/share" TZ=UTC

# track FILE POINTS: one fix a second from 2024-05-01 08:00:00 UTC, wandering north-east, with
# heights; 25 points to a segment of 10,000 so that the track has gaps too.
track() {
  awk -v n="$2" 'BEGIN {
    print "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
    print "<gpx version=\"1.1\" creator=\"bench\" xmlns=\"http://www.topografix.com/GPX/1/1\"><trk><name>bench</name><trkseg>"
    start = 1714550400
    for (i = 0; i < n; i++) {
      if (i > 0 && i % 10000 == 0) print "</trkseg><trkseg>"
      t = start + i; d = int(t / 86400); s = t % 86400
      printf "<trkpt lat=\"%.7f\" lon=\"%.7f\"><ele>%.1f</ele><time>2024-05-%02dT%02d:%02d:%02dZ</time></trkpt>\n",
        46 + i * 0.00001, 14 + i * 0.000013, 500 + (i % 700) / 3, 1 + d - 19844, int(s / 3600), int(s % 3600 / 60), s % 60
    }
    print "</trkseg></trk></gpx>"
  }' > "$1"
}
track "$work/track.gpx" "$points"

# 100 photos without a place, dated across the track's 28 hours (and a little beyond), each
# copied 50 times.
exiftool -q -q -all= -overwrite_original "$source_jpeg" -o "$work/base/source.jpg"
args=$work/dates.args
: > "$args"
for ((i = 0; i < 100; i++)); do
  t=$((1714550400 - 600 + i * 1010))
  printf -- '-DateTimeOriginal=%s\n-OffsetTimeOriginal=+00:00\n-o\n%s/base/%03d.jpg\n%s/base/source.jpg\n-execute\n' \
    "$(date -u -d "@$t" '+%Y:%m:%d %H:%M:%S')" "$work" "$i" "$work" >> "$args"
done
exiftool -q -q -@ "$args" > /dev/null
rm "$work/base/source.jpg"
for ((i = 0; i < photos; i++)); do
  cp "$work/base/$(printf '%03d' $((i % 100))).jpg" "$work/orvelle/$(printf 'IMG_%05d.jpg' "$i")"
done
cp -r "$work/orvelle/." "$work/exiftool/"
cat "$work/orvelle"/* "$work/exiftool"/* "$work/track.gpx" > /dev/null

start=$(date +%s.%N)
"$cli" geotag --gpx "$work/track.gpx" --dry-run --json "$work/orvelle" > "$work/orvelle.json" || [ $? -eq 1 ]
orvelle=$(awk -v a="$(date +%s.%N)" -v b="$start" 'BEGIN { print a - b }')
placed=$(grep -c '"trackMatch": "\(point\|interpolated\)"' "$work/orvelle.json" || true)

start=$(date +%s.%N)
exiftool -q -q -m -overwrite_original -geotag "$work/track.gpx" '-geotime<${DateTimeOriginal}+00:00' \
  "$work/exiftool" > /dev/null 2>&1 || true
exiftool_time=$(awk -v a="$(date +%s.%N)" -v b="$start" 'BEGIN { print a - b }')

printf 'geotag:    %d photos, a track of %d points in %d segments\n' "$photos" "$points" $(((points + 9999) / 10000))
printf 'orvelle:   %.3f s (dry run, %d placed)\n' "$orvelle" "$placed"
printf 'exiftool:  %.3f s (-geotag, writing)\n' "$exiftool_time"
printf 'ratio:     %.1fx\n' "$(awk -v a="$exiftool_time" -v b="$orvelle" 'BEGIN { print a / b }')"

# About 100 MB: some 850,000 points.
track "$work/big.gpx" 850000
track "$work/tiny.gpx" 10
size=$(stat -c %s "$work/big.gpx")
# Wall time, and the processor time the run took (on a shared machine the fairer figure).
measure() { /usr/bin/time -f '%e %U %S %M' "$cli" geotag --gpx "$1" --dry-run "$work/empty" 2>&1 > /dev/null | tail -n 1; }
read -r big_seconds big_user big_sys big_kb < <(measure "$work/big.gpx")
read -r tiny_seconds tiny_user tiny_sys tiny_kb < <(measure "$work/tiny.gpx")
big_cpu=$(awk -v u="$big_user" -v s="$big_sys" 'BEGIN { print u + s }')
printf 'parse:     %.1f MB of GPX in %.2f s wall, %.2f s processor (%.1f MB/s), tiny track %.2f s wall\n' \
  "$(awk -v s="$size" 'BEGIN { print s / 1e6 }')" "$big_seconds" "$big_cpu" \
  "$(awk -v s="$size" -v t="$big_cpu" 'BEGIN { print s / 1e6 / t }')" "$tiny_seconds"
printf 'memory:    peak %.0f MB (tiny track: %.0f MB), %.2f bytes of memory per byte of file\n' \
  "$(awk -v k="$big_kb" 'BEGIN { print k / 1024 }')" "$(awk -v k="$tiny_kb" 'BEGIN { print k / 1024 }')" \
  "$(awk -v k="$big_kb" -v t="$tiny_kb" -v s="$size" 'BEGIN { print (k - t) * 1024 / s }')"

# The reader alone and the tokenizer alone, in processor seconds; exiftool on a slice of 10 MB cut
# at a point's end, in MB per processor second.
cpu() { /usr/bin/time -f '%U %S %M' "$@" 2>&1 > /dev/null | tail -n 1 | awk '{ print $1 + $2, $3 }'; }
read -r reader_cpu reader_kb < <(cpu "$gpx_bench" reader "$work/big.gpx")
read -r tokens_cpu tokens_kb < <(cpu "$gpx_bench" tokens "$work/big.gpx")
{ head -c 10000000 "$work/big.gpx" | sed '$d'; echo '</trkseg></trk></gpx>'; } > "$work/slice.gpx"
slice=$(stat -c %s "$work/slice.gpx")
read -r exiftool_cpu exiftool_kb < <(cpu exiftool -q -q -m -geotag "$work/slice.gpx" '-geotime=2024:05:01 09:00:00Z' \
  -o "$work/slice.jpg" "$work/base/000.jpg")
awk -v s="$size" -v r="$reader_cpu" -v t="$tokens_cpu" -v rk="$reader_kb" -v sl="$slice" -v e="$exiftool_cpu" 'BEGIN {
  printf "reader:    %.2f s processor (%.1f MB/s, peak %.0f MB); Qt tokenizer alone %.2f s (%.1f MB/s): the reader costs %.2fx the tokenizer\n",
    r, s / 1e6 / r, rk / 1024, t, s / 1e6 / t, r / t
  printf "exiftool:  %.1f MB/s reading GPX (%.1f MB in %.2f s processor); ratio %.1fx\n",
    sl / 1e6 / e, sl / 1e6, e, (s / r) / (sl / e)
}'
