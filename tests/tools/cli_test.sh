#!/usr/bin/env bash
# The typeprint command on real fixtures: formats, exit statuses, errors on stderr naming the
# file, scans that go on past damaged files, job-count independence, duplicates and splitting.
# Expected names and checksums are those of tests/fonts/sfnt/README.md (fontTools, zlib).
set -uo pipefail
tool=$1 fonts=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
check() {  # check WHAT CONDITION...
  local what=$1; shift
  if "$@"; then :; else echo "FAILED: $what"; failures=$((failures + 1)); fi
}
contains() { grep -qF -- "$2" <<<"$1"; }

out=$("$tool" --help); check "help exits 0 and lists commands" contains "$out" "identify"
"$tool" frobnicate 2>"$work/err"; check "unknown command exits 2" test $? -eq 2
check "unknown command is named on stderr" contains "$(cat "$work/err")" "frobnicate"
"$tool" identify --format yaml "$fonts/sfnt/DejaVuSans-kern.ttf" 2>/dev/null; check "bad format exits 2" test $? -eq 2

out=$("$tool" identify --format xml "$fonts/sfnt/DejaVuSans-3faces.ttc")
check "xml carries the rebuilt face CRC" contains "$out" "<Checksum>66F9F536</Checksum>"
out=$("$tool" identify --format json "$fonts/sfnt/DejaVuSans-3faces.ttc")
check "json lists every face" contains "$out" '"postScriptName":"DejaVuSans-Oblique"'
check "json numbers are decimal" contains "$out" "\"checksum\":$((0xE902AFD2))"
out=$("$tool" identify --format plist "$fonts/sfnt/NimbusSans-Regular.otf")
check "plist is the library's property list" contains "$out" "<string>7400DF99</string>"
out=$("$tool" identify "$fonts/sfnt/NimbusSans-Regular.otf")
check "text shows kind and name" contains "$out" "NimbusSans-Regular"
check "a bare FILE is identified" test "$("$tool" "$fonts/sfnt/NimbusSans-Regular.otf")" = "$out"
out=$("$tool" identify --mask 0x1 --format json "$fonts/sfnt/NimbusSans-Regular.otf")
check "mask limits the attributes" test "$(grep -c '"kind"' <<<"$out")" -eq 0

head -c 300 "$fonts/sfnt/DejaVuSans-kern.ttf" > "$work/damaged.ttf"
"$tool" identify "$work/damaged.ttf" >/dev/null 2>"$work/err"; check "damaged file exits 1" test $? -eq 1
check "damaged file is named on stderr" contains "$(cat "$work/err")" "$work/damaged.ttf"

mkdir -p "$work/scan/sub"
cp "$fonts/sfnt/DejaVuSans-kern.ttf" "$work/scan/"
cp "$fonts/sfnt/DejaVuSans-kern.ttf" "$work/scan/sub/copy.ttf"
cp "$fonts/sfnt/DejaVuSans-DSIG.ttf" "$work/scan/sub/"
cp "$fonts/sfnt/DejaVuSans-3faces.ttc" "$work/scan/sub/"
cp "$work/damaged.ttf" "$work/scan/sub/"
echo "not a font" > "$work/scan/README"
"$tool" scan --jobs 1 "$work/scan" >"$work/one" 2>"$work/err"; status=$?
check "scan with a damaged file exits 1" test $status -eq 1
check "scan names the damaged file" contains "$(cat "$work/err")" "damaged.ttf"
check "scan goes on past it" contains "$(cat "$work/one")" "DejaVuSans-Bold"
check "scan summary counts files and faces" contains "$(cat "$work/one")" "6 files, 4 identified, 6 faces, 1 failures"
"$tool" scan --jobs 4 "$work/scan" >"$work/four" 2>/dev/null
check "output does not depend on --jobs" cmp -s "$work/one" "$work/four"
out=$("$tool" scan --format json "$work/scan" 2>/dev/null)
check "json scan summary" contains "$out" '"summary":{"files":6,"identified":4,"faces":6,"failures":1'

rm "$work/scan/sub/damaged.ttf"
out=$("$tool" duplicates "$work/scan"); check "duplicates exits 0 without failures" test $? -eq 0
check "same font found twice" contains "$out" "same font 6CEF5D8F"
check "conflict on one PostScript name" contains "$out" "conflict DejaVuSans:"

mkdir "$work/split"
out=$("$tool" split "$fonts/sfnt/DejaVuSans-3faces.ttc" "$work/split")
check "split writes three faces" test "$(ls "$work/split" | wc -l)" -eq 3
out=$("$tool" identify --format json "$work/split/1.ttf")
check "a split face keeps its name" contains "$out" '"postScriptName":"DejaVuSans-Bold"'
check "a split face is the rebuilt face" contains "$out" "\"checksum\":$((0x66F9F536))"
"$tool" split "$fonts/sfnt/DejaVuSans-kern.ttf" "$work/split" 2>/dev/null; check "split of a plain font exits 1" test $? -eq 1

out=$("$tool" classify "DejaVu Sans"); check "classify answers a class" test "$out" != "--"
out=$("$tool" styles "Helvetica-BoldOblique" "Helvetica Bold Oblique"); check "styles finds bold" contains "$out" "Bold"

[ $failures -eq 0 ] || { echo "$failures checks failed"; exit 1; }
echo "all checks passed"
