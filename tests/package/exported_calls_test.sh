#!/usr/bin/env bash
# exported_calls_test.sh LIST PROGRAM: the program calls each function that the library exports, but
# for the one that creates a file at a fixed path.
set -euo pipefail
called=$(nm -DC --undefined-only "$2" | sed -E 's/^ *U //' | LC_ALL=C sort -u)
grep -F -q 'devcfg_add_device(' <<<"$called"
diff -u <(echo 'initial_xml()') <(grep -F '(' "$1" | LC_ALL=C sort -u | LC_ALL=C comm -23 - <(echo "$called"))
