#!/usr/bin/env bash
# Checks that includes run one way through the library's floors: a file may include its own
# folder and any lower floor, never a higher one nor a neighbour on its own floor.
#   scripts/check-layers.sh           fails (exit 1) listing every upward or sideways include
#   scripts/check-layers.sh --graph   prints the include edges counted per folder pair
# Every top-level folder holding C or C++ sources must be declared below, either as a floor or as
# outside the library.
set -euo pipefail
cd "$(dirname "$0")/.."

# Floors, low to high. Folders sharing a number are rooms on one floor and do not include each other.
declare -A FLOOR=(
  [base]=1 [platform/linux]=2 [foundation]=3 [tables]=4 [style]=4 [analysis]=5 [resources]=6
  [faces]=7 [api]=8 [formats]=9 [rescue]=10 [tools]=11
)
# Folders outside the library: they may include anything.
OUTSIDE="tests fuzz bench build cmake data debian scripts"

folder_of() {  # the declared folder a path lies in, or nothing
  case "$1" in platform/linux/*) echo platform/linux ;; */*) echo "${1%%/*}" ;; esac
}

status=0
for top in $(find . -mindepth 2 -maxdepth 3 \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) -printf '%P\n' |
             cut -d/ -f1 | sort -u); do
  [[ " $OUTSIDE " == *" $top "* || -n "${FLOOR[$top]:-}" || "$top" == platform || "$top" == build* ]] && continue
  echo "check-layers: folder $top/ is not declared in scripts/check-layers.sh" >&2
  status=1
done

# One line per include between two library folders: "from to file:line".
edges() {
  local dir file line target from to
  for dir in "${!FLOOR[@]}"; do
    [ -d "$dir" ] || continue
    while IFS=: read -r file line target; do
      target=${target#*\"}; target=${target%%\"*}
      from=$(folder_of "$file")
      if [[ "$target" == */* ]]; then to=$(folder_of "$target")
      elif [ -e "$(dirname "$file")/$target" ]; then to=$from
      elif [ -e "api/$target" ]; then to=api
      else continue  # a generated header
      fi
      [ -n "${FLOOR[$to]:-}" ] && echo "$from $to $file:$line"
    done < <(grep -Hn '^[[:space:]]*#[[:space:]]*include[[:space:]]*"' "$dir"/*.{h,cpp,c} 2>/dev/null || true)
  done
}

if [ "${1:-}" = --graph ]; then
  edges | awk '$1 != $2 { print $1 " -> " $2 }' | sort | uniq -c | sort -k2
  exit "$status"
fi

while read -r from to where; do
  [ "$from" = "$to" ] && continue
  if (( FLOOR[$to] >= FLOOR[$from] )); then
    echo "check-layers: $where: $from/ (floor ${FLOOR[$from]}) includes $to/ (floor ${FLOOR[$to]})" >&2
    status=1
  fi
done < <(edges)
exit "$status"
