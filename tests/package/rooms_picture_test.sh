#!/usr/bin/env bash
# rooms_picture_test.sh SOURCE_DIRECTORY: docs/rooms.svg shows the arrows that the includes have now.
set -euo pipefail
cd "$1"
shown=$(sed -nE 's#^<title>(.*)&\#45;&gt;(.*)</title>$#\1 -> \2#p' docs/rooms.svg | LC_ALL=C sort)
[ -n "$shown" ]
diff -u <(echo "$shown") <(docs/draw_rooms.sh --edges) || {
  echo "docs/rooms.svg is stale: run ./dev rooms"
  exit 1
}
