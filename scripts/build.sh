#!/usr/bin/env bash
# Configures (once) and builds one build tree incrementally.
#   build.sh DIR [extra cmake arguments...] [-- targets...]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=$1; shift
cmake_args=(); targets=()
while [ $# -gt 0 ]; do
  if [ "$1" = "--" ]; then shift; targets=("$@"); break; fi
  cmake_args+=("$1"); shift
done
if [ ! -f "$dir/build.ninja" ]; then
  cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release "${cmake_args[@]}"
fi
if [ ${#targets[@]} -gt 0 ]; then
  cmake --build "$dir" --target "${targets[@]}"
else
  cmake --build "$dir"
fi
