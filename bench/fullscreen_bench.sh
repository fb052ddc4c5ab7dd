#!/usr/bin/env bash
# The full-screen step and the screen-size decode beside vipsthumbnail (see fullscreen_bench.cpp).
#   bench/fullscreen_bench.sh [IMAGES]   (needs build/bench/orvelle-fullscreen-bench)
set -euo pipefail
source "$(dirname "$0")/common.sh"
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
"${ORV_FULLSCREEN_BENCH:-$root/build/bench/orvelle-fullscreen-bench}" "${1:-8}"
