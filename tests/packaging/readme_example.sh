#!/usr/bin/env bash
# The C example in README.md compiles against the header and the shared library, and runs.
set -euo pipefail
readme=$1 cc=$2 include=$3 libdir=$4 font=$5
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
awk '/^```c$/{on=1; next} /^```$/{on=0} on' "$readme" > "$work/example.c"
[ -s "$work/example.c" ] || { echo "no C example in README"; exit 1; }
"$cc" -std=c99 -Wall -Werror -o "$work/example" "$work/example.c" -I"$include" -L"$libdir" -ltypeprint
# Without a font it must refuse cleanly with status 1; with one it prints each face.
if LD_LIBRARY_PATH=$libdir "$work/example" 2>/dev/null; then echo "example accepted no file"; exit 1; fi
out=$(LD_LIBRARY_PATH=$libdir "$work/example" "$font")
[ "$out" = "DejaVuSans 6CEF5D8F" ] || { echo "unexpected output: $out"; exit 1; }
