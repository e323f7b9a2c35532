#!/usr/bin/env bash
# demo-devices.sh [DEVCFG]: the device tree and the device rules, on the files in examples/devices.
# Needs a devcfg whose build sets ORVANEIP_ROOT: only files below it are changed.
# Fails as soon as a step does not show what it should.
set -euo pipefail
program=$(realpath "$(command -v "${1:-devcfg}")")
cd "$(dirname "$0")/devices"
devcfg() { "$program" "$@"; }

root=$(devcfg --root)
[ -n "$root" ] || { echo "$program works on the real paths: use one of a development build" >&2; exit 1; }
readonly tree=$root/third_party/zelip/config
export ORVANE_VAULT=$root/demo/vault.db
rm -rf "$tree" "$root/demo"
mkdir -p "$root/etc/config" "$root/demo"

# expect STATUS TEXT COMMAND...: the command ends with STATUS and its output contains TEXT. It reads
# the file $input, if set.
expect() {
  local status=$1 text=$2 output outcome=0
  shift 2
  printf '\n$ %s%s\n' "$*" "${input:+ <$input}"
  output=$("$@" 2>&1 <"${input:-/dev/null}") || outcome=$?
  printf '%s\n' "$output"
  [ "$outcome" = "$status" ] || { echo "demo: exit status $outcome, not $status" >&2; exit 1; }
  case $output in
    *"$text"*) ;;
    *) echo "demo: '$text' is not shown" >&2; exit 1 ;;
  esac
}

echo "== A new system, then the shop's own device tree"
expect 1 "devcfg tree init" devcfg tree nodes
expect 0 "zelip.xml" devcfg tree init
expect 0 "" devcfg tree nodes
cp device_tree.xml "$tree/zelip.xml"
cp builtin_list.xml "$tree/zelip_builtin.xml"
cp rules.xml "$root/etc/config/kfilter.xml"
expect 0 "Scale in the store room" devcfg tree nodes
expect 0 "device_002" devcfg tree find scale-1
expect 0 "192.168.7.31" devcfg tree show device_000
expect 0 "open-sesame" devcfg tree show device_000 --show-password

echo
echo "== Another till"
expect 0 "device_003" devcfg tree add till-2 --type pos --name "Till at the back" \
  --connection lan --ip 192.168.7.32 --port 9100
expect 1 "already" devcfg tree add till-2
input=password.txt expect 0 "device_004" devcfg tree add till-3 --password-stdin
expect 0 "sesame-2" devcfg tree show device_004 --show-password

echo
echo "== The built-in devices: first a dry run, then the change"
expect 0 "builtin_1" devcfg tree sync-builtin --dry-run
expect 0 "matches" devcfg tree sync-builtin
expect 0 "Door contacts on the alarm bus" devcfg tree nodes
expect 0 "nothing to change" devcfg tree sync-builtin --dry-run

echo
echo "== The rules for text from the till at the front door"
expect 0 "Drawer opened" devcfg rules list
input=till_texts.txt expect 0 "The drawer was opened" devcfg rules apply TILL-1
input=till_texts.txt expect 0 "no rules for till-9" devcfg rules apply till-9

echo
echo "== The events of two devices; the event service no longer has those of the till"
expect 0 "no events recorded" devcfg tree clear-events event_tree.xml device_002
expect 1 "did not remove" devcfg tree clear-events event_tree.xml device_000
