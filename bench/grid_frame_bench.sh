#!/usr/bin/env bash
# The rating grid's median frame time at 100, 10,000 and 100,000 items (see grid_frame_bench.cpp).
#   bench/grid_frame_bench.sh [FRAMES]   (needs build/bench/orvelle-grid-bench)
set -euo pipefail
source "$(dirname "$0")/common.sh"
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
"${ORV_GRID_BENCH:-$root/build/bench/orvelle-grid-bench}" "${1:-200}"
