#!/usr/bin/env bash
# hardening_test.sh COMPILE_COMMANDS LEVEL FILE...: in every preset each built FILE is position-
# independent, checks its stack frames, has no executable stack, and binds its symbols before it
# runs, in tables that are read-only then. Every source is compiled with _FORTIFY_SOURCE=LEVEL;
# "none" in the presets with sanitizers or coverage. Prints what is wrong.
set -euo pipefail
commands=$1 level=$2 failures=0
shift 2
[ $# -ge 3 ]
wanted='Type: +DYN
 GNU_RELRO 
 GNU_STACK .* RW +0x
\(FLAGS_1\).* NOW
 __stack_chk_fail(@|$)'
options=-fstack-protector-strong
[ "$level" = none ] || wanted+=$'\n __[a-z]+_chk(@|$)' options+=" -D_FORTIFY_SOURCE=$level"
for file in "$@"; do
  facts=$(LC_ALL=C readelf -W --file-header --program-headers --dynamic --dyn-syms "$file")
  while IFS= read -r pattern; do
    grep -Eq "$pattern" <<<"$facts" || { echo "$file: no $pattern"; failures=1; }
  done <<<"$wanted"
done
grep -q '"command"' "$commands"
for option in $options; do
  if grep '"command"' "$commands" | grep -v -e "$option"; then failures=1; fi
done
exit $failures
