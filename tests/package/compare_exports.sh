#!/usr/bin/env bash
# compare_exports.sh LIBRARY LIST: the names that LIBRARY exports are those of LIST, no more, no less.
set -euo pipefail
exported=$(nm -DC --defined-only "$1" | cut -c20- | LC_ALL=C sort -u)
[ -n "$exported" ]
diff -u "$2" <(printf '%s\n' "$exported")
