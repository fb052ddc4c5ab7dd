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

sanitized_suites=(tests_core tests_formats tests_time)
"$root/scripts/build.sh" "$root/build-sanitize" -- "${sanitized_suites[@]}"
# Each suite runs as a few whole processes rather than one per case: under the sanitizers a
# process start costs a hundred times what most cases do.
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
failed=0
for suite in "${sanitized_suites[@]}"; do
  pids=()
  for ((shard = 0; shard < jobs; shard++)); do
    GTEST_TOTAL_SHARDS=$jobs GTEST_SHARD_INDEX=$shard \
      "$root/build-sanitize/tests/$suite" --gtest_brief=1 &
    pids+=($!)
  done
  for pid in "${pids[@]}"; do wait "$pid" || failed=1; done
done
exit $failed
