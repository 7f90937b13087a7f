#!/usr/bin/env bash
# The hardening half of the test run: the whole suite under AddressSanitizer and
# UndefinedBehaviorSanitizer, creation from several threads under ThreadSanitizer, and every fuzz
# target for FUZZ_SECONDS (default 30). Any finding fails the run.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)

echo "== AddressSanitizer + UndefinedBehaviorSanitizer"
[ -f build-asan/CMakeCache.txt ] || cmake --preset asan >/dev/null
cmake --build build-asan -j "$jobs" >/dev/null
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir build-asan --output-on-failure -j "$jobs" --label-exclude packaging

echo "== ThreadSanitizer (creation and shared tables from several threads)"
[ -f build-tsan/CMakeCache.txt ] || cmake --preset tsan >/dev/null
cmake --build build-tsan -j "$jobs" --target api_tests >/dev/null
TSAN_OPTIONS=halt_on_error=1 build-tsan/stage/tests/api_tests --gtest_filter='*Thread*' --gtest_brief=1

echo "== Fuzzing"
fuzz/run.sh "${FUZZ_SECONDS:-30}"
