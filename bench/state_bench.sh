#!/usr/bin/env bash
# Keeps a working set of COUNT corpus JPEG copies, each with a pending change, and restores it,
# beside a fresh import of the same files in the same run (see state_bench.cpp). Targets: the
# restore in at most half the import's time, at most 1 KB of state per item, and no more memory
# after the restore than after the import.
#   bench/state_bench.sh [COUNT...]   (default 20000 100000; needs build/bench/orvelle-state-bench)
set -euo pipefail
source "$(dirname "$0")/common.sh"
bench=${ORV_STATE_BENCH:-$root/build/bench/orvelle-state-bench}
[ -x "$bench" ] || { echo "no $bench; build the orvelle-state-bench target first" >&2; exit 2; }
counts=("$@")
[ ${#counts[@]} -gt 0 ] || counts=(20000 100000)
work=$(mktemp -d /tmp/orvelle-state-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data

figure() { sed -n "s/^$1 \([0-9.]*\) s, \([0-9]*\) KB.*/\\$2/p"; }
for count in "${counts[@]}"; do
  rm -rf "$work/photos" "$work/state"
  fill_with_jpegs "$work/photos" "$count"
  import=$("$bench" import "$work/photos")
  write=$("$bench" write "$work/photos" "$work/state")
  restore=$("$bench" restore "$work/state")
  echo "== $count items"
  echo "$import"; echo "$write"; echo "$restore"
  import_s=$(figure import 1 <<< "$import"); restore_s=$(figure restore 1 <<< "$restore")
  import_kb=$(figure import 2 <<< "$import"); restore_kb=$(figure restore 2 <<< "$restore")
  awk -v r="$restore_s" -v i="$import_s" -v rk="$restore_kb" -v ik="$import_kb" -v b="$(stat -c %s "$work/state")" -v n="$count" \
    'BEGIN { printf "restore/import: %.2fx of the time (target: at most 0.5x), %.2fx of the memory (target: at most 1x); state %.0f bytes per item (target: at most 1024)\n", r / i, rk / ik, b / n }'
done
