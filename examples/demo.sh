#!/usr/bin/env bash
# Shows devcfg on the shop in examples/shop/, in its own vault, which is removed at the end. Fails
# when a step does not do what it says.
set -euo pipefail
cd "$(dirname "$0")/shop"

directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT
readonly directory
export ORVANE_VAULT=$directory/vault.db

fail() {
  echo "demo.sh: $*" >&2
  exit 1
}

say() { printf '\n# %s\n' "$*"; }

# Prints a command as a person types it; the demo's own directory is left out of paths.
prompt() {
  local word line='$'
  for word in "$@"; do
    word=${word#"$directory/"}
    case $word in
      *[!A-Za-z0-9_.,:=/@-]* | '') line+=" \"$word\"" ;;
      *) line+=" $word" ;;
    esac
  done
  printf '%s\n' "$line"
}

# Runs a command that must succeed; sets $output.
run() {
  prompt "$@"
  output=$("$@") || fail "exit status $? of: $*"
  [ -z "$output" ] || printf '%s\n' "$output"
}

# Runs a command that must fail with exit status 1.
fails() {
  prompt "$@"
  local status=0
  output=$("$@" 2>&1) || status=$?
  printf '%s\n[exit status %s]\n' "$output" "$status"
  [ "$status" = 1 ] || fail "exit status $status instead of 1 of: $*"
}

# Runs a command on a file; its standard error is written to the file "errors".
run_on() {
  local file=$1
  shift
  printf '%s <%s\n' "$(prompt "$@")" "${file#"$directory/"}"
  output=$("$@" <"$file" 2>"$directory/errors") || fail "exit status $? of: $*"
  printf '%s\n' "$output"
  cat "$directory/errors"
}

# shows TEXT: the output of the last command contains it. hides TEXT: it does not.
shows() { [[ $output == *"$1"* ]] || fail "the output does not show: $1"; }
hides() { [[ $output != *"$1"* ]] || fail "the output still shows: $1"; }
same() { cmp -s "$1" "$2" || fail "$1 and $2 differ"; }

say "A vault for this demo; without the variable it is /var/lib/orvane/vault.db."
prompt export ORVANE_VAULT=vault.db

say "Four devices of a shop: a till on a serial line, a door, a plate reader, a till with a display."
run devcfg add till-1 --type pos-serial --name "Till 1" --description "Serial line 1, 9600 baud" \
  --channels channels-till-1.json
run devcfg add door-staff --type access-control --name "Staff door" --channels channels-door-staff.json
run devcfg add plates-yard --type plate-reader --name "Yard gate" --channels channels-plates-yard.json
run devcfg add till-2 --type customer-display --name "Till 2" --disabled \
  --channel 0:cam-till-2:"Till 2 from above" --channel 1:cam-entrance:Entrance
run devcfg list
for id in till-1 door-staff plates-yard till-2; do shows "$id"; done

say "devcfg can generate an identifier; programs read JSON."
run devcfg add --type pos-serial --name "Spare till" --json
shows '"vault_id": "ID'
spare=$(devcfg list --json | sed -n 's/.*"vault_id": "\(ID[0-9A-F]*\)".*/\1/p')
[ ${#spare} = 34 ] || fail "no identifier of 34 characters: $spare"

say "One of them in full."
run devcfg show till-1
shows "Serial line 1, 9600 baud"
shows "Till 1 from above"

say "A change of the name keeps the description; the display till is enabled."
run devcfg modify till-1 --name "Front till"
run devcfg modify till-2 --enable --description "Display protocol, port 4001"
run devcfg show till-1 --json
shows '"vault_name": "Front till"'
shows '"description": "Serial line 1, 9600 baud"'

say "Names are unique: a name that is in use is rejected, and nothing changes."
fails devcfg modify till-2 --name "Front till"
shows "another data source has this name"
run devcfg list
shows "Till 2"

say "Text filters keep card numbers and names of staff out of the records."
run devcfg filters set till-1 filters-till-1.json
run devcfg filters set door-staff filters-door-staff.json
run devcfg filters set plates-yard filters-plates-yard.json
run devcfg filters set till-2 filters-till-2.json
run devcfg filters show till-1
shows "CARD **** **** ****"
fails devcfg filters set nobody filters-till-1.json

say "A receipt arrives and is filtered; the replacements are counted."
sed -n 's/^till-1\t//p' incoming.txt >"$directory/receipt.txt"
run_on "$directory/receipt.txt" devcfg filter-text till-1 --hits
shows "CARD **** **** **** 0815"
shows "OPERATOR: 07"
hides "4929 1100"
hides "Zoë"
grep -q '^ *1  "CARD 4929 1100 2233 "' "$directory/errors" || fail "the replacement of the card number is not counted"

say "A camera is renamed and another one removed: their channels are updated in every data source."
run devcfg camera renamed cam-entrance "Main entrance"
shows "renamed 2 channels"
run devcfg camera removed cam-yard
shows "removed 2 channels"
run devcfg channels
shows "Main entrance"
hides "cam-yard"

say "The whole vault is exported as one document; its import is previewed, then done."
run devcfg export "$directory/backup.json"
prompt export ORVANE_VAULT=second.db
export ORVANE_VAULT=$directory/second.db
run devcfg import "$directory/backup.json" --dry-run
shows "dry run"
run devcfg list
shows "no data sources"
run devcfg import "$directory/backup.json"
shows "5 added"
run devcfg export "$directory/again.json"
run cmp "$directory/backup.json" "$directory/again.json"

say "An import overwrites only with --replace."
fails devcfg import shop.json
shows "is stored already"
run devcfg import shop.json --replace
shows "4 added"
devcfg export "$directory/shop.json"
same "$directory/shop.json" shop.json

say "Removing data sources removes their channels and filters too."
run devcfg remove till-1 till-2
shows "Till 1"
run devcfg list
hides "till-1"
shows "plates-yard"

say "Done. Every step did what it says."
