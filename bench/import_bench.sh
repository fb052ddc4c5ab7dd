#!/usr/bin/env bash
# Headless import speed: a folder of 10,000 camera JPEGs copied from the corpus, imported by
# `orvelle-cli scan --json` (output discarded), reported in files per second. Run by hand:
#   bench/import_bench.sh [BUILD_DIR] [FILE_COUNT]
set -euo pipefail
source "$(dirname "$0")/common.sh"
cli=${1:-$root/build}/src/orvelle-cli
count=${2:-10000}
[ -x "$cli" ] || { echo "no $cli; build first" >&2; exit 1; }

work=$(mktemp -d /tmp/orvelle-import-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT
fill_with_jpegs "$work" "$count"
"$cli" scan --json "$work" > /dev/null || true   # warm the binary
took=$(seconds "$cli" scan --json "$work")
echo "orvelle-cli scan: $count files in $took s: $(rate "$count" "$took") files/s"
