// Quoting for SQL.
#pragma once

#include <string>
#include <string_view>

namespace base {

// Returns the text between two marks, with each mark inside it doubled: an SQL literal with ', a
// name with ".
inline std::string sql_quoted(std::string_view text, char mark) {
  std::string result(1, mark);
  for (const char byte : text) {
    result.append(byte == mark ? 2 : 1, byte);
  }
  return result += mark;
}

}  // namespace base
