#pragma once

#include <string>
#include <string_view>

namespace base {

// The text between two marks, a mark inside it doubled: with ' an SQL literal, with " a name.
inline std::string sql_quoted(std::string_view text, char mark) {
  std::string result(1, mark);
  for (const char byte : text) {
    result.append(byte == mark ? 2 : 1, byte);
  }
  return result += mark;
}

}  // namespace base
