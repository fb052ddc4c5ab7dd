#!/usr/bin/env bash
# The map's median frame time at 100, 10,000 and 100,000 pins (see map_frame_bench.cpp).
#   bench/map_frame_bench.sh [FRAMES]   (needs build/bench/orvelle-map-bench)
set -euo pipefail
source "$(dirname "$0")/common.sh"
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
"${ORV_MAP_BENCH:-$root/build/bench/orvelle-map-bench}" "${1:-60}"
