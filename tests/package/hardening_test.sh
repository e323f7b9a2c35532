#!/usr/bin/env bash
# hardening_test.sh COMPILE_COMMANDS LEVEL FILE...: every built FILE, in every preset, is
# position-independent, checks its stack frames, has no executable stack, and binds all symbols
# before it runs, in tables that are read-only then. LEVEL is that of _FORTIFY_SOURCE, with which
# every source is compiled; "none" in the presets with sanitizers or coverage.
set -euo pipefail
commands=$1 level=$2
shift 2
[ $# -ge 3 ]
failures=0
expect() { # expect WHAT PATTERN
  grep -Eq -- "$2" <<<"$facts" || { echo "$file: no $1"; failures=1; }
}
for file in "$@"; do
  facts=$(LC_ALL=C readelf -W --file-header --program-headers --dynamic --dyn-syms "$file")
  expect "position-independent code" 'Type: +DYN'
  expect "read-only tables" ' GNU_RELRO '
  expect "binding of all symbols at the start" '\(FLAGS_1\).* NOW'
  expect "stack without code" ' GNU_STACK .* RW +0x'
  expect "check of stack frames" ' __stack_chk_fail(@|$)'
  [[ $file == *.so* ]] || expect "position-independent program" '\(FLAGS_1\).* PIE'
  [ "$level" = none ] || expect "call of a checked function" ' __[a-z]+_chk(@|$)'
  if grep -q TEXTREL <<<"$facts"; then
    echo "$file: its code is written to when it is loaded"
    failures=1
  fi
done

wanted=(-fstack-protector-strong)
[ "$level" = none ] || wanted+=("-D_FORTIFY_SOURCE=$level")
grep -q '"command"' "$commands"
for option in "${wanted[@]}"; do
  if grep '"command"' "$commands" | grep -v -e "$option"; then
    echo "compiled without $option"
    failures=1
  fi
done
exit $failures
