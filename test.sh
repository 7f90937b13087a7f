#!/usr/bin/env bash
# Checks that includes run one way through the folders, installs missing dependencies, builds,
# and runs the whole test suite; then runs it again under the sanitizers and fuzzes every parser
# (scripts/sanitizer-checks.sh).
set -euo pipefail
cd "$(dirname "$0")"
./scripts/check-layers.sh
./scripts/build.sh
ctest --test-dir build --output-on-failure -j "$(nproc)"
./scripts/sanitizer-checks.sh
