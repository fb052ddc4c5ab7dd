#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (installed with the other build tools when missing) and runs each
# for a while, seeded with the corpus files of its container. The tree is the sanitized one that
# scripts/test.sh also builds the byte-level suites in, so the model is compiled once for both.
#   scripts/fuzz.sh [SECONDS_PER_TARGET] [BUILD_DIR]     (defaults: 10, build-sanitize)
# A crash leaves its input as crash-* in the working directory and fails the script.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
seconds=${1:-10}
dir=${2:-$root/build-sanitize}
corpus=${ORV_CORPUS_DIR:-$root/../shared/corpus}

"$root/scripts/deps.sh"
if [ ! -f "$dir/build.ninja" ]; then
  cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DORV_FUZZ=ON -DORV_WITH_UI=OFF
fi
cmake --build "$dir" --target fuzzers

# seeds TARGET PATTERN...: a fresh seed folder with the corpus files of the target's container.
seeds() {
  local seed_dir=$dir/seeds/$1 pattern
  shift
  mkdir -p "$seed_dir"
  for pattern in "$@"; do
    find "$corpus" -type f -iname "$pattern" -size -2M -exec cp -n {} "$seed_dir/" \; 2> /dev/null || true
  done
  echo "$seed_dir"
}

export QT_QPA_PLATFORM=offscreen
# fuzz TARGET SEED_DIR: one target for a while, from (and into) its seed folder in the tree.
fuzz() {
  local target=$1 seed_dir=$2 log=$dir/$1.log
  echo "== $target, $seconds s"
  if ! "$dir/fuzz/$target" -max_total_time="$seconds" -rss_limit_mb=2048 -print_final_stats=1 \
       "$seed_dir" > "$log" 2>&1; then
    tail -n 60 "$log"
    return 1
  fi
  grep -E '^(#[0-9]+ +DONE|stat::number_of_executed_units)' "$log" || true
}
run() {
  local target=$1
  shift
  fuzz "$target" "$(seeds "$target" "$@")"
}
run fuzz_jpeg '*.jpg' '*.jpeg'
run fuzz_tiff '*.tif' '*.tiff' '*.dng' '*.nef' '*.cr2' '*.arw' '*.rw2' '*.orf'
run fuzz_png '*.png'
run fuzz_webp '*.webp'
run fuzz_xmp '*.xmp'
run fuzz_quicktime '*.mov' '*.mp4' '*.m4v' '*.3gp'
run fuzz_heif '*.heic' '*.heif' '*.avif'
run fuzz_cr3 '*.cr3'
run fuzz_avi '*.avi'
run fuzz_gpx '*.gpx'
# States have no corpus files: small states kept in the source tree seed their reader.
mkdir -p "$dir/seeds/fuzz_state"
cp -n "$root"/fuzz/seeds/state/* "$dir/seeds/fuzz_state/"
fuzz fuzz_state "$dir/seeds/fuzz_state"
