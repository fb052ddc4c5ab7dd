#!/usr/bin/env bash
# Installs what is missing, builds everything, and runs every test: the whole suite in a normal
# build, a short run of every container's fuzzer (docs/fuzzing.md has the long run), then the
# byte-level suites again under AddressSanitizer and UndefinedBehaviorSanitizer, in the fuzzers'
# clang tree so that the sanitized model is compiled once.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/deps.sh"

export QT_QPA_PLATFORM=offscreen

jobs=$(nproc)

"$root/scripts/build.sh" "$root/build"
ctest --test-dir "$root/build" --output-on-failure -j "$jobs"

"$root/scripts/fuzz.sh" 5 "$root/build-sanitize"

"$root/scripts/build.sh" "$root/build-sanitize" -- tests_core tests_formats tests_time
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
  ctest --test-dir "$root/build-sanitize" --output-on-failure -j "$jobs"
