#!/usr/bin/env bash
# Measures identification over a corpus of real font files as whole processes, in the build type
# users get (RelWithDebInfo), warm page cache, repetitions interleaved, medians and ratios:
#   driver      bench/corpus_driver: TP_CreateSpecifier with every attribute bit, one thread
#   floor       bench/floor.c -c deflate -r -x -m: map each file, CRC every byte once with
#               libdeflate, collection faces' CRCs combined from their tables' (the real limit)
#   zlib floor  bench/floor.c -c zlib: read() each file and CRC it with zlib
#   fc-scan     fontconfig's scanner over the same files, one process
#   scan        typeprint scan --format json --jobs 1, and --jobs 2 against the parallel floor
#               (two floors side by side, each on half the files)
# and the same for the collections alone.
#
#   bench/corpus.sh [--reps N] [--tree] [--before DIR] [FILE-LIST]
# FILE-LIST defaults to every .ttf .otf .ttc .pfb .pfa .t1 under /usr/share/fonts
# (/work/shared/corpus.sh installs the reference corpus). --tree also builds a synthetic tree of
# hard links to the corpus in a temporary folder and measures the scan's cost per file and peak
# RSS at 1,000 and 100,000 files (several minutes). --before DIR adds the corpus_driver and
# typeprint programs of another build (copied to DIR/bin, its library to DIR/lib, its data to
# DIR/share) as two more interleaved columns, for before-and-after ratios on a noisy machine.
set -euo pipefail
cd "$(dirname "$0")/.."
reps=7
tree=no
before=
while [ $# -gt 0 ]; do
  case $1 in
    --reps) reps=$2; shift 2 ;;
    --tree) tree=yes; shift ;;
    --before) before=$(realpath "$2"); shift 2 ;;
    *) break ;;
  esac
done

# The build scripts/build.sh makes (RelWithDebInfo unless configured otherwise), plus the programs
# measured here.
build=build
cmake -S . -B $build -DTYPEPRINT_BUILD_BENCHMARKS=ON >/dev/null
cmake --build $build -j "$(nproc)" --target corpus_driver corpus_floor typeprint_tool >/dev/null
bin=$build/stage/bench
tool=$(find $build/stage/bin -maxdepth 1 -name typeprint -type f | head -1)
build_type=$(sed -n 's/^CMAKE_BUILD_TYPE:[A-Z]*=//p' $build/CMakeCache.txt)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
if [ $# -ge 1 ]; then cp "$1" "$work/all"; else
  find /usr/share/fonts -type f \( -iname '*.ttf' -o -iname '*.otf' -o -iname '*.ttc' -o -iname '*.pfb' \
    -o -iname '*.pfa' -o -iname '*.t1' \) | sort > "$work/all"
fi
grep -i '\.ttc$' "$work/all" > "$work/ttc" || true

median() { sort -g | awk '{a[NR]=$1} END {print (NR%2 ? a[(NR+1)/2] : (a[NR/2]+a[NR/2+1])/2)}'; }
ratio() { echo "$1 / $2" | bc -l | xargs printf '%.2f'; }
compare() { printf '%-32s %5.2fx %5.2fx\n' "$1" "$(ratio "$(seconds $2)" "$(seconds $3)")" "$(ratio "$(cpu $2)" "$(cpu $3)")"; }

# Seconds of CPU (user and system) used by the shell's finished children, from `times` run in
# this shell (a command substitution would see only its own subshell's children).
children_cpu() {
  tail -1 "$1" | awk '{ s = 0; for (i = 1; i <= 2; i++) { split($i, p, /[ms]/); s += p[1] * 60 + p[2] }; print s }'
}

# run NAME COMMAND...: runs the command once as a whole process; appends its wall seconds to
# $work/NAME.s, its CPU seconds (its own and its children's, user and system) to $work/NAME.cpu
# and its peak RSS in KB to $work/NAME.rss.
run() {
  local name=$1; shift
  local t0 t1
  times > "$work/times.before"
  t0=$(date +%s%N)
  /usr/bin/time -f '%M' -o "$work/time.out" "$@" >"$work/$name.stdout" 2>/dev/null || true
  t1=$(date +%s%N)
  times > "$work/times.after"
  echo "scale=6; ($t1 - $t0) / 1000000000" | bc >> "$work/$name.s"
  echo "$(children_cpu "$work/times.after") - $(children_cpu "$work/times.before")" | bc -l >> "$work/$name.cpu"
  tail -1 "$work/time.out" >> "$work/$name.rss"
}

seconds() { median < "$work/$1.s"; }
cpu() { median < "$work/$1.cpu"; }
rss() { sort -n "$work/$1.rss" | tail -1; }

# measure LIST LABEL FULL: interleaved repetitions of every column over the list.
measure() {
  local list=$1 label=$2 full=$3 c files
  mapfile -t files < "$list"
  # The parallel floor: two best floors side by side, each on every other file of the list.
  awk 'NR % 2' "$list" > "$list.half1"; awk '!(NR % 2)' "$list" > "$list.half2"
  printf '#!/bin/sh\n%s -c deflate -r -x -m %s >/dev/null &\n%s -c deflate -r -x -m %s >/dev/null\nwait\n' \
    "$bin/corpus_floor" "$list.half1" "$bin/corpus_floor" "$list.half2" > "$work/parallel_floor"
  chmod +x "$work/parallel_floor"
  rm -f "$work"/*.s "$work"/*.cpu "$work"/*.rss "$work"/*.stdout
  xargs -d '\n' -a "$list" cat >/dev/null   # warm the page cache
  for _ in $(seq "$reps"); do
    run driver "$bin/corpus_driver" < "$list"
    [ -z "$before" ] || LD_LIBRARY_PATH=$before/lib run driver0 "$before/bin/corpus_driver" < "$list"
    run floor "$bin/corpus_floor" -c deflate -r -x -m "$list"
    [ "$full" = yes ] || continue
    run zlib "$bin/corpus_floor" -c zlib "$list"
    command -v fc-scan >/dev/null && run fcscan fc-scan --format '' "${files[@]}"
    run scan1 "$tool" scan --format json --jobs 1 "${files[@]}"
    [ -z "$before" ] || LD_LIBRARY_PATH=$before/lib run scan10 "$before/bin/typeprint" scan --format json --jobs 1 "${files[@]}"
    run scan2 "$tool" scan --format json --jobs 2 "${files[@]}"
    run pfloor "$work/parallel_floor"
  done
  local bytes largest
  bytes=$(xargs -d '\n' -a "$list" stat -c %s | awk '{s += $1} END {print s}')
  largest=$(xargs -d '\n' -a "$list" stat -c %s | sort -n | tail -1)
  echo "== $label: ${#files[@]} files, $(echo "$bytes / 1048576" | bc -l | xargs printf '%.1f') MB, largest $((largest / 1024)) KB"
  for c in driver driver0 floor zlib fcscan scan1 scan10 scan2 pfloor; do
    [ -f "$work/$c.s" ] || continue
    printf '%-8s wall %6.3f s %6.0f MB/s  cpu %6.3f s  peak RSS %7d KB   wall runs: %s\n' "$c" "$(seconds $c)" \
      "$(echo "$bytes / 1048576 / $(seconds $c)" | bc -l)" "$(cpu $c)" "$(rss $c)" \
      "$(sort -g "$work/$c.s" | xargs printf '%.3f ')"
  done
  echo "ratios of medians                wall    cpu"
  compare "driver / floor" driver floor
  echo "driver peak RSS / largest file   $(ratio "$(rss driver) * 1024" "$largest")x"
  [ -z "$before" ] || compare "driver / driver before" driver driver0
  [ "$full" = yes ] || return 0
  compare "driver / zlib floor" driver zlib
  compare "scan --jobs 1 / driver" scan1 driver
  [ -f "$work/fcscan.s" ] && compare "scan --jobs 1 / fc-scan" scan1 fcscan
  compare "scan --jobs 2 / parallel floor" scan2 pfloor
  compare "scan --jobs 2 / --jobs 1" scan2 scan1
  [ -z "$before" ] || compare "scan --jobs 1 / before" scan1 scan10
  if cmp -s "$work/scan1.stdout" "$work/scan2.stdout"; then echo "scan --jobs 2 output identical to --jobs 1"
  else echo "scan --jobs 2 output DIFFERS from --jobs 1"; fi
}

# tree_scan COUNT DEPTH: a tree of COUNT hard links to the corpus files of at most 256 KB in turn
# (where the cost per file, not the bytes, dominates), 100 to a folder, each folder DEPTH levels
# down; prints the scan's seconds per file (median of 3) and its peak RSS.
tree_scan() {
  local count=$1 depth=$2 root="$work/tree"
  rm -rf "$root" "$work"/tree.s "$work"/tree.rss
  xargs -d '\n' -a "$work/all" stat -c '%s %n' | awk '$1 <= 262144 {print substr($0, index($0, " ") + 1)}' > "$work/small"
  python3 - "$work/small" "$root" "$count" "$depth" <<'PY'
import os, sys
corpus = open(sys.argv[1]).read().split("\n")[:-1]
root, count, depth = sys.argv[2], int(sys.argv[3]), int(sys.argv[4])
for i in range(count):
    folder = os.path.join(root, *["d%d" % d for d in range(1, depth)], "f%d" % (i // 100))
    if i % 100 == 0: os.makedirs(folder)
    source = corpus[i % len(corpus)]
    os.link(source, os.path.join(folder, "%d-%s" % (i, os.path.basename(source))))
PY
  for _ in 1 2 3; do run tree "$tool" scan --format json --jobs 1 "$root"; done
  printf 'tree %6d files, depth %2d: %7.1f us/file, peak RSS %6d KB\n' "$count" "$depth" \
    "$(echo "$(seconds tree) * 1000000 / $count" | bc -l)" "$(rss tree)"
  rm -rf "$root"
}

echo "machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | xargs), $(uname -r)," \
  "load average $(cut -d' ' -f1-3 /proc/loadavg)"
echo "build type: $build_type; $reps interleaved repetitions, medians; wall and CPU (user + system) time"
measure "$work/all" "whole corpus" yes
[ -s "$work/ttc" ] && measure "$work/ttc" "collections only" no
if [ "$tree" = yes ]; then
  tree_scan 1000 2
  tree_scan 1000 24
  tree_scan 100000 2
fi
echo "load average after: $(cut -d' ' -f1-3 /proc/loadavg)"
