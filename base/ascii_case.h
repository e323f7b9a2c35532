// Letter case of ASCII letters, whatever the locale.
#pragma once

#include <algorithm>
#include <string_view>

namespace base {

constexpr char to_lower(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

constexpr bool equal_ignoring_case(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char one, char other) { return to_lower(one) == to_lower(other); });
}

}  // namespace base
