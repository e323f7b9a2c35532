#!/usr/bin/env bash
# check_includes.sh SOURCE_DIRECTORY: the rooms include only what docs/architecture.md allows them.
set -euo pipefail
cd "$1"
declare -A allowed
while read -r room targets; do
  allowed[${room%:}]=" $targets "
done < <(sed -n '/^```edges$/,/^```$/{/^```/d;p}' docs/architecture.md)
[ ${#allowed[@]} -ge 4 ] || { echo "no table of edges in docs/architecture.md"; exit 1; }

# Sets `owner` to the longest room of the table that holds the file, or to ".".
find_owner() {
  owner=$1
  while [[ $owner == */* ]]; do
    owner=${owner%/*}
    [ -n "${allowed[$owner]+x}" ] && return
  done
  owner=.
}

failures=0
while IFS=: read -r file include; do
  find_owner "$file" && from=$owner
  find_owner "$include" && target=$owner
  [ "$from" = "$target" ] && continue
  case "${allowed[$from]-}" in
    *" $target "* | *" $include "*) ;;
    *) echo "$file includes $include: $from may not include $target"; failures=1 ;;
  esac
done < <(grep -rHoP '^#include "\K[^"]+' --include='*.h' --include='*.cc' "${!allowed[@]}")
exit $failures
