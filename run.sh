#!/usr/bin/env bash
# Installs missing build dependencies, builds, and runs the typeprint command-line tool.
set -euo pipefail
cd "$(dirname "$0")"
./scripts/build.sh >&2
exec build/stage/bin/typeprint "$@"
