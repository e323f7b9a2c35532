#!/usr/bin/env bash
# durability_test.sh PROGRAM ROOT DEVCFG: in the system calls of PROGRAM, which works below ROOT, and
# of an export, everything is on the disk before it is acknowledged. A trace without the calls that
# put data on the disk, or without those that put a directory there, is detected.
set -euo pipefail
program=$1 root=$2 devcfg=$3
here=$(dirname "$0") trace=$2.trace
rm -rf "$root"
mkdir -p "$root/third_party/zelip/config"
export ORVANE_VAULT=$root/vault/vault.db ORVANE_LOG=off
export ASAN_OPTIONS=detect_leaks=0 # which needs to trace the program itself
strace -f -y -o "$trace" -e trace='/^(open|mk|rename|link|unlink|p?write|ftruncate|f(data)?sync)' \
  sh -c '"$1" && "$2" export "$3/export.json"' sh "$program" "$devcfg" "$root" >/dev/null

check() { awk -v root="$root" -v acknowledged=11 -f "$here/order.awk" "$1"; }
check "$trace"
for lost in .wal .db root vault .saving zelip.xml....... config json.......; do
  grep -Ev "sync\([0-9]+<[^>]*$lost>" "$trace" >"$trace.broken"
  if cmp -s "$trace" "$trace.broken" || check "$trace.broken" >/dev/null; then
    echo "not detected: a trace without $lost"
    exit 1
  fi
done
