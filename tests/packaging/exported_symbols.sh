#!/usr/bin/env bash
# The shared library exports exactly the TP_ functions that the public header declares.
set -euo pipefail
library=$1 header=$2
exported=$(nm -D --defined-only "$library" | awk '{print $3}' | grep -vE '^(_init|_fini|_edata|_end|__bss_start)$' | sort)
declared=$(grep -oE '\bTP_[A-Za-z]+\(' "$header" | tr -d '(' | sort -u)
if [ "$exported" != "$declared" ]; then
  echo "exported and declared symbols differ:"; diff <(echo "$declared") <(echo "$exported") || true
  exit 1
fi
count=$(echo "$exported" | wc -l)
[ "$count" -eq 29 ] || { echo "expected 29 exports, found $count"; exit 1; }
