#!/usr/bin/env bash
# Per-keystroke time of the zone search over all places (see zone_search_bench.cpp).
#   bench/zone_search_bench.sh [ROUNDS]   (needs build/bench/orvelle-zone-search-bench)
set -euo pipefail
source "$(dirname "$0")/common.sh"
"${ORV_ZONE_SEARCH_BENCH:-$root/build/bench/orvelle-zone-search-bench}" "${1:-20}"
