#include "schema/internal/sql_name.h"

#include <sqlite3.h>

#include <algorithm>

#include "base/sql_quote.h"

namespace orvaneip {
namespace {

bool is_digit(char byte) { return byte >= '0' && byte <= '9'; }

bool may_start_name(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_' ||
         static_cast<unsigned char>(byte) >= 0x80;
}

bool may_be_in_name(char byte) { return may_start_name(byte) || is_digit(byte) || byte == '$'; }

bool is_plain_name(std::string_view name) {
  return !name.empty() && may_start_name(name.front()) &&
         std::all_of(name.begin(), name.end(), may_be_in_name) &&
         sqlite3_keyword_check(name.data(), static_cast<int>(name.size())) == 0;
}

// Returns whether it is like "(20)" or "(10,2)": digits with at most one comma between them.
bool is_plain_size(std::string_view size) {
  if (size.size() < 3 || size.front() != '(' || size.back() != ')') {
    return false;
  }
  const std::string_view numbers = size.substr(1, size.size() - 2);
  const auto comma = std::find(numbers.begin(), numbers.end(), ',');
  const bool has_comma = comma != numbers.end();
  return comma != numbers.begin() && std::all_of(numbers.begin(), comma, is_digit) &&
         (!has_comma ||
          (comma + 1 != numbers.end() && std::all_of(comma + 1, numbers.end(), is_digit)));
}

bool is_plain_type(std::string_view word) {
  const std::size_t bracket = word.find('(');
  return is_plain_name(word.substr(0, bracket)) &&
         (bracket == std::string_view::npos || is_plain_size(word.substr(bracket)));
}

}  // namespace

std::string name_in_sql(std::string_view name) {
  return is_plain_name(name) ? std::string(name) : base::sql_quoted(name, '"');
}

std::string type_in_sql(std::string_view word) {
  return word.empty() || is_plain_type(word) ? std::string(word) : base::sql_quoted(word, '"');
}

}  // namespace orvaneip
