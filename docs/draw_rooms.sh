#!/usr/bin/env bash
# draw_rooms.sh [--edges]: the picture of the rooms, docs/rooms.svg, from the includes of the sources;
# with --edges just the arrows, one a line. An arrow that others imply is left out.
set -euo pipefail
cd "$(dirname "$0")/.."

# Prints the rooms, one a line: the directories of the table in docs/architecture.md.
rooms() { sed -n '/^```edges$/,/^```$/{/^```/d;s/:.*//;p}' docs/architecture.md; }

# Prints "FROM TO" for each pair of rooms of which the first includes a header of the second.
edges() {
  local room pattern sources
  pattern=$(rooms | sort -r | paste -sd '|')
  for room in $(rooms); do
    mapfile -t sources < <(find "$room" -name '*.h' -o -name '*.cc')
    # The rooms of platform/embedded are rooms of their own.
    [ "$room" != platform ] || mapfile -t sources < <(find platform -maxdepth 1 -name '*.h')
    grep -hoP '^#include "\K[^"]+' "${sources[@]}" |
      sed -nE "s#^($pattern)/.*#$room \\1#p; s#^orvaneip\\.h\$#$room orvaneip.h#p" || true
  done | sort -u | awk '$1 != $2'
  for room in $(grep -oP '^#include "\K[^/"]+(?=/)' orvaneip.h | sort -u); do echo "orvaneip.h $room"; done
}

graph() {
  cat <<'DOT'
digraph rooms {
  graph [rankdir=TB, ranksep=0.55, nodesep=0.35, fontname="sans-serif", margin=0.1]
  node [shape=box, style="rounded,filled", fillcolor="#eef3fa", color="#5b7aa6", fontname="sans-serif",
        fontsize=13, height=0.4]
  edge [color="#7f8fa6", arrowsize=0.6]
  "orvaneip.h" [fillcolor="#fdf3dc", color="#b98a2c"]
  "platform" [label="platform\n(contracts)", fillcolor="#fdf3dc", color="#b98a2c"]
  "platform/embedded/log", "platform/embedded/command", "platform/embedded/host",
  "platform/embedded/tree", "platform/embedded/vault", "platform/embedded/event"
    [fillcolor="#e7f4e8", color="#5c9161"]
  "base" [fillcolor="#f2f2f2", color="#808080"]
DOT
  edges | sed -E 's/(.*) (.*)/  "\1" -> "\2"/'
  echo "}"
}

if [ "${1-}" = --edges ]; then
  graph | tred 2>/dev/null | sed -nE 's/^\s*"?([^" ]+)"? -> "?([^";[]+)"?.*/\1 -> \2/p' | LC_ALL=C sort
else
  graph | tred 2>/dev/null | dot -Tsvg >docs/rooms.svg
fi
