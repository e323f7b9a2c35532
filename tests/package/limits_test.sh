#!/usr/bin/env bash
# limits_test.sh SOURCE_DIRECTORY: docs/limits.md lists each number and each file name that a header
# defines ("inline constexpr TYPE kName = ..."), with the value that the compiler gives it, and no
# other. A row is "| what it is | value | kName | `header` |".
set -euo pipefail
cd "$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
rooms=$(sed -n '/^```edges$/,/^```$/{/^```/d;s/:.*//;p}' docs/architecture.md)

# Prints "header namespace::kName" for each constant.
constants() {
  # shellcheck disable=SC2086
  find $rooms -name '*.h' | LC_ALL=C sort -u | xargs awk '
    FNR == 1 { space = "" }
    /^namespace [a-z_:]+ \{/ { space = $2 "::" }
    /^}  \/\/ namespace/ { space = "" }
    /^inline constexpr [^(]* k[A-Za-z0-9]+(\[\])? =/ {
      match($0, /k[A-Za-z0-9]+(\[\])? =/)
      name = substr($0, RSTART, RLENGTH)
      sub(/(\[\])? =/, "", name)
      print FILENAME, space name
    }'
}

constants >"$work/constants"
[ "$(wc -l <"$work/constants")" -ge 20 ]
{
  cut -d' ' -f1 "$work/constants" | sort -u | sed 's/.*/#include "&"/'
  cat <<'CPP'
#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>
#include <type_traits>
// A mode is written in octal.
template <typename Value>
std::string shown(const Value& value, std::string_view name) {
  if (name.find("Mode ") != std::string_view::npos) {
    char text[16] = "";
    if constexpr (std::is_integral_v<Value>) {
      std::snprintf(text, sizeof(text), "%#o", static_cast<unsigned>(value));
    }
    return text;
  }
  if constexpr (std::is_same_v<Value, char32_t>) {
    return "";  // a character
  } else if constexpr (std::is_integral_v<Value> || std::is_enum_v<Value>) {
    return std::to_string(static_cast<long long>(value));
  } else if constexpr (std::is_convertible_v<const Value&, std::string_view>) {
    const std::string text(static_cast<std::string_view>(value));
    const bool is_file_name =
        text.find_first_of("/.") != std::string::npos && text.find(' ') == std::string::npos;
    return is_file_name ? "`" + text + "`" : "";
  } else {
    return std::to_string(value.count());
  }
}
void print(const char* name, const std::string& value) {
  value.empty() ? 0 : std::printf("%s%s\n", name, value.c_str());
}
int main() {
CPP
  while read -r header name; do
    echo "  print(\"$header ${name##*::} \", shown($name, \"${name##*::} \"));"
  done <"$work/constants"
  echo "}"
} >"$work/print.cc"
# shellcheck disable=SC2046
g++ -std=c++20 -DORVANEIP_ROOT='""' -I . $(pkg-config --cflags json-c) -o "$work/print" "$work/print.cc"
diff -u --label docs/limits.md --label headers \
  <(sed -nE 's/^\| [^|]+ \| ([^|]+) \| (k[A-Za-z0-9]+) \| `([^|]+)` \|$/\3 \2 \1/p' docs/limits.md |
      sed -E ':again s/([0-9]),([0-9]{3})/\1\2/; t again' | LC_ALL=C sort) \
  <("$work/print" | LC_ALL=C sort)
