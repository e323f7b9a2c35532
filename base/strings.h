// Small operations on strings.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace base {

// Returns the text without the `characters` at its start and its end.
constexpr std::string_view trim(std::string_view text, std::string_view characters) {
  const std::size_t first = text.find_first_not_of(characters);
  return first == std::string_view::npos
             ? std::string_view()
             : text.substr(first, text.find_last_not_of(characters) - first + 1);
}

// Returns the texts in order, with the separator between every two.
inline std::string join(const std::vector<std::string>& texts, std::string_view separator) {
  std::string joined;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    joined.append(i > 0 ? separator : "").append(texts[i]);
  }
  return joined;
}

}  // namespace base
