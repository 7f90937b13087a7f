#!/usr/bin/env bash
# Configures (once) and builds typeprint incrementally in build/: every target, or only the targets
# named as arguments (./run.sh builds just the command).
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh
[ -f build/CMakeCache.txt ] || cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
targets=()
for target in "$@"; do targets+=(--target "$target"); done
cmake --build build -j "$(nproc)" "${targets[@]}"
