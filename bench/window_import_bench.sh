#!/usr/bin/env bash
# The window's import of one folder next to the headless scan of the same folder, warm cache:
# start to quit of `orvelle --import-and-quit` (window shown, list filled and sorted) against
# `orvelle-cli scan` (its plain text, the lightest output). The window should take at most twice
# as long.
#   bench/window_import_bench.sh [COUNT]   (default 10000 files; needs build/src/orvelle and
#                                           build/src/orvelle-cli; QT_QPA_PLATFORM defaults to
#                                           offscreen, set DISPLAY and QT_QPA_PLATFORM=xcb for X)
set -euo pipefail
source "$(dirname "$0")/common.sh"
count=${1:-10000}
work=$(mktemp -d /tmp/orvelle-window-bench.XXXXXX)
trap 'rm -rf "$work"' EXIT

fill_with_jpegs "$work/photos" "$count"
# Settings of its own, so that no question stops the run and the user's settings stay untouched.
export XDG_CONFIG_HOME=$work/config
mkdir -p "$XDG_CONFIG_HOME/orvelle"
printf '[General]\nskipEmptyTagImportOptions=1\nisAlwaysShowOptionsDisabled=1\n' > "$XDG_CONFIG_HOME/orvelle/orvelle.conf"
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}

"$cli" scan "$work/photos" > /dev/null                    # warm both binaries
listed=$("$app" --import-and-quit "$work/photos" 2> /dev/null)
[ "$listed" = "$count items listed" ] || { echo "the window listed: $listed" >&2; exit 1; }
headless=$(seconds "$cli" scan "$work/photos")
window=$(seconds "$app" --import-and-quit "$work/photos")

echo "files:                  $count JPEGs copied from the corpus, $(nproc) cores, $QT_QPA_PLATFORM"
echo "orvelle-cli scan:       $(rate "$count" "$headless") files/s ($headless s)"
echo "orvelle window import:  $(rate "$count" "$window") files/s ($window s)"
awk -v a="$window" -v b="$headless" 'BEGIN { printf "window / headless:      %.2fx (target: at most 2x)\n", a / b }'
