#!/usr/bin/env bash
# A walk through devcfg with the shop in examples/shop/, in a vault of its own that is removed at the
# end. Ends with an error when a step does not do what it says.
set -euo pipefail
cd "$(dirname "$0")/shop"

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
readonly folder
export ORVANE_VAULT=$folder/vault.db

fail() {
  echo "demo.sh: $*" >&2
  exit 1
}

say() { printf '\n# %s\n' "$*"; }

# Prints a command as a person types it; files of the demo's own folder are shown without it.
prompt() {
  local word line='$'
  for word in "$@"; do
    word=${word#"$folder/"}
    case $word in
      *[!A-Za-z0-9_.,:=/@-]* | '') line+=" \"$word\"" ;;
      *) line+=" $word" ;;
    esac
  done
  printf '%s\n' "$line"
}

# Runs a command that must succeed. Its output is also kept in $output.
run() {
  prompt "$@"
  output=$("$@") || fail "exit status $? of: $*"
  [ -z "$output" ] || printf '%s\n' "$output"
}

# Runs a command that must end with exit status 1 and a reason.
refused() {
  prompt "$@"
  local status=0
  output=$("$@" 2>&1) || status=$?
  printf '%s\n[exit status %s]\n' "$output" "$status"
  [ "$status" = 1 ] || fail "exit status $status instead of 1 of: $*"
}

# Runs a command on a file, with what it prints on standard error in the file "errors".
run_on() {
  local file=$1
  shift
  printf '%s <%s\n' "$(prompt "$@")" "${file#"$folder/"}"
  output=$("$@" <"$file" 2>"$folder/errors") || fail "exit status $? of: $*"
  printf '%s\n' "$output"
  cat "$folder/errors"
}

# shows TEXT: the output of the last command holds it. hides TEXT: it does not.
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

say "An identifier can be left to devcfg; programs read JSON."
run devcfg add --type pos-serial --name "Spare till" --json
shows '"vault_id": "ID'
spare=$(devcfg list --json | sed -n 's/.*"vault_id": "\(ID[0-9A-F]*\)".*/\1/p')
[ ${#spare} = 34 ] || fail "no identifier of 34 characters: $spare"

say "What is stored about one of them."
run devcfg show till-1
shows "Serial line 1, 9600 baud"
shows "Till 1 from above"

say "A change of the name keeps the description; the display till goes into service."
run devcfg modify till-1 --name "Front till"
run devcfg modify till-2 --enable --description "Display protocol, port 4001"
run devcfg show till-1 --json
shows '"vault_name": "Front till"'
shows '"description": "Serial line 1, 9600 baud"'

say "A name belongs to one data source: the second one is refused, and nothing changes."
refused devcfg modify till-2 --name "Front till"
shows "another data source has this name"
run devcfg list
shows "Till 2"

say "Text filters: card numbers and names of staff never reach the records."
run devcfg filters set till-1 filters-till-1.json
run devcfg filters set door-staff filters-door-staff.json
run devcfg filters set plates-yard filters-plates-yard.json
run devcfg filters set till-2 filters-till-2.json
run devcfg filters show till-1
shows "CARD **** **** ****"
refused devcfg filters set nobody filters-till-1.json

say "A receipt comes in, and what becomes of it; the number of replacements is counted."
sed -n 's/^till-1\t//p' incoming.txt >"$folder/receipt.txt"
run_on "$folder/receipt.txt" devcfg filter-text till-1 --hits
shows "CARD **** **** **** 0815"
shows "OPERATOR: 07"
hides "4929 1100"
hides "Zoë"
grep -q '^ *1  "CARD 4929 1100 2233 "' "$folder/errors" || fail "the hit of the card is not counted"

say "A camera is renamed, and its channels follow in every data source; another one is gone."
run devcfg camera renamed cam-entrance "Main entrance"
shows "renamed 2 channels"
run devcfg camera removed cam-yard
shows "removed 2 channels"
run devcfg channels
shows "Main entrance"
hides "cam-yard"

say "The whole vault as one document, a look at what an import would do, and the import."
run devcfg export "$folder/backup.json"
prompt export ORVANE_VAULT=second.db
export ORVANE_VAULT=$folder/second.db
run devcfg import "$folder/backup.json" --dry-run
shows "dry run"
run devcfg list
shows "no data sources"
run devcfg import "$folder/backup.json"
shows "5 added"
run devcfg export "$folder/again.json"
run cmp "$folder/backup.json" "$folder/again.json"

say "An import never overwrites by itself; --replace says so."
refused devcfg import shop.json
shows "is stored already"
run devcfg import shop.json --replace
shows "4 added"
devcfg export "$folder/shop.json"
same "$folder/shop.json" shop.json

say "Removing data sources takes their channels and filters along."
run devcfg remove till-1 till-2
shows "Till 1"
run devcfg list
hides "till-1"
shows "plates-yard"

say "Done. Every step did what it says."
