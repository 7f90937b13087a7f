#!/usr/bin/env bash
# Configures (once) and builds typeprint incrementally in build/.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh
[ -f build/CMakeCache.txt ] || cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j "$(nproc)"
