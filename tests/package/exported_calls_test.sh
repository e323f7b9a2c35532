#!/usr/bin/env bash
# exported_calls_test.sh LIST TABLE...: each function that the library exports is called in one of
# the files TABLE, so that the tests which go through the table leave none out.
set -euo pipefail
list=$1
shift
called=0
while read -r name; do
  grep -qE "\\b$name\\(" "$@" || { echo "not called: $name" >&2; exit 1; }
  called=$((called + 1))
done < <(sed -nE 's/^([A-Za-z]+::)?([A-Za-z]\w*)(\[abi:cxx11\])?\(.*/\2/p' "$list" | sort -u)
[ "$called" -gt 70 ]
