#!/usr/bin/env bash
# Measures identification over a corpus of real font files against the floor (read every file
# and zlib-CRC it) and against fc-scan, with warm caches, interleaved repetitions and medians.
#   bench/corpus.sh [FILE-LIST]   (default: every .ttf .otf .ttc .pfb .pfa .t1 under /usr/share/fonts)
set -euo pipefail
cd "$(dirname "$0")/.."
reps=${REPS:-5}
build=build-bench
[ -f $build/CMakeCache.txt ] || cmake --preset bench >/dev/null
cmake --build $build -j "$(nproc)" --target corpus_driver crc_floor >/dev/null
bin=$build/stage/bench

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
if [ $# -ge 1 ]; then cp "$1" "$work/all"; else
  find /usr/share/fonts -type f \( -iname '*.ttf' -o -iname '*.otf' -o -iname '*.ttc' -o -iname '*.pfb' \
    -o -iname '*.pfa' -o -iname '*.t1' \) | sort > "$work/all"
fi
grep -i '\.ttc$' "$work/all" > "$work/ttc" || true

field() { sed -n "s/.* $1 \([^ ]*\).*/\1/p"; }
median() { sort -g | awk '{a[NR]=$1} END {print (NR%2 ? a[(NR+1)/2] : (a[NR/2]+a[NR/2+1])/2)}'; }

run_fcscan() {  # seconds and peak RSS of fc-scan over the list, in one process
  local out; out=$( { /usr/bin/time -f 'maxrss %M' fc-scan --format '' $(cat "$1") ; } 2>&1 >/dev/null | tail -1)
  echo "$out"
}

measure() {  # list name -> prints medians: driver floor fcscan seconds, rss
  local list=$1 d=() f=() s=() rss_d=0 rss_f=0 rss_s=0
  xargs -a "$list" cat >/dev/null 2>&1 || true   # warm the page cache
  for _ in $(seq "$reps"); do
    local a b
    a=$("$bin/corpus_driver" < "$list"); d+=("$(echo "$a" | field seconds)"); rss_d=$(echo "$a" | field maxrss_kb)
    b=$("$bin/crc_floor" < "$list"); f+=("$(echo "$b" | field seconds)"); rss_f=$(echo "$b" | field maxrss_kb)
    if command -v fc-scan >/dev/null && [ "$3" = yes ]; then
      local t0 t1; t0=$(date +%s.%N); rss_s=$(run_fcscan "$list" | awk '{print $2}'); t1=$(date +%s.%N)
      s+=("$(echo "$t1 - $t0" | bc -l)")
    fi
  done
  local md mf ms=""
  md=$(printf '%s\n' "${d[@]}" | median); mf=$(printf '%s\n' "${f[@]}" | median)
  [ ${#s[@]} -gt 0 ] && ms=$(printf '%s\n' "${s[@]}" | median)
  local files bytes faces; files=$(wc -l < "$list"); bytes=$(echo "$a" | field bytes); faces=$(echo "$a" | field faces)
  local largest; largest=$(xargs -a "$list" stat -c %s | sort -n | tail -1)
  echo "== $2: $files files, $faces faces, $(echo "$bytes/1048576" | bc -l | xargs printf '%.1f') MB, largest $((largest/1024)) KB"
  printf 'driver  %.3f s  %.0f files/s  %.0f MB/s  peak RSS %d KB\n' "$md" "$(echo "$files/$md" | bc -l)" "$(echo "$bytes/1048576/$md" | bc -l)" "$rss_d"
  printf 'floor   %.3f s  %.0f MB/s  peak RSS %d KB\n' "$mf" "$(echo "$bytes/1048576/$mf" | bc -l)" "$rss_f"
  printf 'ratio driver/floor  %.2fx\n' "$(echo "$md/$mf" | bc -l)"
  printf 'peak RSS / largest file  %.2fx\n' "$(echo "$rss_d*1024/$largest" | bc -l)"
  if [ -n "$ms" ]; then
    printf 'fc-scan %.3f s  peak RSS %s KB\n' "$ms" "$rss_s"
    printf 'speed-up over fc-scan  %.2fx\n' "$(echo "$ms/$md" | bc -l)"
  fi
}

echo "machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | xargs), $(uname -r)"
measure "$work/all" "whole corpus" yes
[ -s "$work/ttc" ] && measure "$work/ttc" "collections only" no
