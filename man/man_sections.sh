#!/usr/bin/env bash
# Writes the help2man include file for typeprint(1): a COMMANDS section holding each command's own
# --help, so the page documents exactly the options the command takes, then the hand-written
# sections of typeprint.h2m (exit status, environment, JSON output, files).
#   man_sections.sh TOOL SECTIONS.h2m OUTPUT
set -euo pipefail
tool=$1 sections=$2 out=$3
# The commands are the two-space-indented words under the "Subcommands:" (or "Commands:") heading.
commands=$("$tool" --help | awk '/^(Sub)?[Cc]ommands:$/ {on = 1; next} on && /^$/ {on = 0} on && /^  [a-z]/ {print $1}')
roff_text() { sed -e 's/\\/\\e/g' -e 's/^\([.'"'"']\)/\\\&\1/'; }
{
  if [ -n "$commands" ]; then
    echo "[COMMANDS]"
    for command in $commands; do
      help=$("$tool" "$command" --help 2>/dev/null) || continue
      printf '.SS %s\n.nf\n' "$command"
      roff_text <<<"$help"
      printf '.fi\n'
    done
  fi
  cat "$sections"
} >"$out"
