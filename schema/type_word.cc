#include "schema/type_word.h"

#include <strings.h>

#include <algorithm>
#include <iterator>

namespace orvaneip {
namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
// The types that SQLite knows without their spelling.
constexpr std::string_view kUpperCased[] = {"ANY", "BLOB", "INT", "INTEGER", "REAL", "TEXT"};
constexpr std::string_view kBehindName = " \t\n\v\f\r\"'`]";

// The length of the white space and comments at the start of `text`.
std::size_t gap_length(std::string_view text) {
  std::size_t length = 0;
  for (;;) {
    const std::size_t start = length;
    length = std::min(text.find_first_not_of(kWhiteSpace, length), text.size());
    if (text.substr(length, 2) == "/*") {
      const std::size_t end = text.find("*/", length + 2);
      length = end != std::string_view::npos ? end + 2 : text.size();
    } else if (text.substr(length, 2) == "--") {
      length = std::min(text.find('\n', length), text.size());
    }
    if (length == start) {
      return length;
    }
  }
}

}  // namespace

std::string type_word(std::string_view declared_type) {
  std::string word;
  int depth = 0;
  for (std::size_t i = gap_length(declared_type); i < declared_type.size();) {
    if (const std::size_t gap = gap_length(declared_type.substr(i)); gap > 0) {
      if (depth <= 0) {
        break;
      }
      i += gap;
      continue;
    }
    const char byte = declared_type[i++];
    depth += byte == '(' ? 1 : byte == ')' ? -1 : 0;
    word += byte;
  }
  return word;
}

WrittenTypes::WrittenTypes(std::string_view create_statement)
    : statement_(create_statement),
      from_(std::min(create_statement.find('('), create_statement.size())) {}

std::string WrittenTypes::spelled(std::string_view name, const std::string& word) {
  if (std::find(std::begin(kUpperCased), std::end(kUpperCased), word) == std::end(kUpperCased)) {
    return word;
  }
  for (std::size_t found = statement_.find(name, from_); found != std::string_view::npos;
       found = statement_.find(name, found + 1)) {
    const std::size_t behind = found + name.size();
    const std::size_t start = statement_.find_first_not_of(kBehindName, behind);
    if (start == std::string_view::npos || start == behind) {
      continue;
    }
    std::string written(statement_.substr(start, word.size()));
    if (strcasecmp(written.c_str(), word.c_str()) == 0) {
      from_ = start + word.size();
      return written;
    }
  }
  from_ = statement_.size();
  return word;
}

}  // namespace orvaneip
