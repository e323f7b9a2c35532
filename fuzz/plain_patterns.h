// Search text by the plain steps. No text contains a NUL or a form feed.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace fuzz {

// Returns the trimmed text, with a NUL for a space and a form feed for a plus sign outside the
// phrase.
inline std::string read_plainly(std::string text, bool keep_lone_quote) {
  text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
  text.erase(text.find_last_not_of(' ') + 1);
  const std::size_t first = text.find('"');
  const std::size_t last = text.rfind('"');
  std::string read;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool counts = (text[i] == ' ' || text[i] == '+') && !(i > first && i < last);
    const char byte = !counts ? text[i] : text[i] == ' ' ? '\0' : '\f';
    const bool repeats = counts && !read.empty() && read.back() == byte;
    const bool dropped = (i == first || i == last) && !(keep_lone_quote && first == last);
    read.append(repeats || dropped ? 0 : 1, byte);
  }
  return read;
}

inline void plain_like(const std::string& input, std::vector<std::string>& patterns) {
  std::string term;
  for (const char byte : read_plainly(input, false) + '\0') {
    if (byte == '\f') {
      term += term.empty() ? "" : "%%";
    } else if (byte != '\0') {
      term.append(byte == '\'' ? 2 : 1, byte);
    } else if (!term.empty()) {
      term.resize(term.size() - (term.ends_with("%%") ? 2 : 0));
      const bool is_new = std::find(patterns.begin(), patterns.end(), term) == patterns.end();
      patterns.insert(patterns.end(), is_new ? 1 : 0, term);
      term.clear();
    }
  }
}

inline std::string plain_regex(const std::string& input) {
  std::string text;
  for (const char byte : read_plainly(input, true)) {
    if (byte == '\0' || byte == '\f') {
      text += byte == '\0' ? "|" : ".*";
    } else {
      text += std::string(".?^|+*\\[]()$").find(byte) != std::string::npos ? "\\" : "";
      text += byte == '|' ? '\f' : byte;  // a bar that the user typed does not end an alternative
    }
  }
  text.erase(0, text.size() > 3 && text.starts_with(".*|") ? 3 : 0);
  for (std::size_t middle; (middle = text.find("|.*|")) != std::string::npos;) {
    text.erase(middle, 3);
  }
  text.resize(text.size() - (text.size() > 3 && text.ends_with("|.*") ? 3 : 0));
  std::replace(text.begin(), text.end(), '\f', '|');
  return text;
}

}  // namespace fuzz
