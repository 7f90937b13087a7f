#!/usr/bin/env bash
# Runs every libFuzzer target for SECONDS seconds (default 30), seeded from its corpus folder.
# New inputs go to a scratch folder, so the committed corpus only grows by hand; a crash input is
# kept as fuzz/findings/<target>-crash-* and fails the run.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-30}
build=build-fuzz
if ! command -v clang++ >/dev/null; then echo "fuzz: clang++ is not installed" >&2; exit 1; fi
[ -f $build/CMakeCache.txt ] || cmake --preset fuzz >/dev/null
cmake --build $build -j "$(nproc)" >/dev/null
mkdir -p fuzz/findings
status=0
for target in $build/fuzz/fuzz_*; do
  [ -x "$target" ] || continue
  name=$(basename "$target")
  scratch=$(mktemp -d)
  echo "fuzz: $name for ${seconds}s"
  if ! "$target" -max_total_time="$seconds" -max_len=65536 -timeout=10 -rss_limit_mb=2048 \
       -artifact_prefix="fuzz/findings/$name-" "$scratch" "fuzz/corpus/$name" >"$scratch.log" 2>&1; then
    echo "fuzz: $name found a problem:" >&2; tail -40 "$scratch.log" >&2; status=1
  fi
  rm -rf "$scratch" "$scratch.log"
done
exit $status
