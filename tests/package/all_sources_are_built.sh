#!/usr/bin/env bash
# all_sources_are_built.sh SOURCE_DIRECTORY COMPILE_COMMANDS: the build compiles each source of the
# tests; one that no CMakeLists.txt names would test nothing.
set -euo pipefail
cd "$1"
built=$(grep -oP '"file": "\K[^"]+' "$2" | xargs realpath --relative-to=. | LC_ALL=C sort -u)
[ -n "$built" ]
missing=$(find tests -name '*.cc' | LC_ALL=C sort | LC_ALL=C comm -23 - <(echo "$built"))
[ -z "$missing" ] || { printf 'not built: %s\n' $missing; exit 1; }
