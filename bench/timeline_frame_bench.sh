#!/usr/bin/env bash
# The strip's median frame time at 100, 10,000 and 100,000 items (see timeline_frame_bench.cpp).
#   bench/timeline_frame_bench.sh [FRAMES]   (needs build/bench/orvelle-timeline-bench)
set -euo pipefail
source "$(dirname "$0")/common.sh"
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
"${ORV_TIMELINE_BENCH:-$root/build/bench/orvelle-timeline-bench}" "${1:-200}"
