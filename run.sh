#!/usr/bin/env bash
# Installs missing build dependencies, builds the typeprint command (and the library code it is
# made of, not the tests), and runs it.
set -euo pipefail
cd "$(dirname "$0")"
./scripts/build.sh typeprint_tool >&2
exec build/stage/bin/typeprint "$@"
