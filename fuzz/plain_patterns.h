// Search text by the plain steps: what the search patterns are compared with.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fuzz {

using Texts = std::vector<std::string>;
using Reading = std::vector<std::pair<char, bool>>;  // bytes, and whether they are of the phrase

inline Reading read_plainly(std::string text, bool keep_lone_quote) {
  text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
  text.erase(text.find_last_not_of(' ') + 1);
  const std::size_t first = text.find('"');
  const std::size_t last = text.rfind('"');
  Reading read;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::pair<char, bool> byte(text[i], i > first && i < last);
    const bool repeats = (byte.first == ' ' || byte.first == '+') && !byte.second &&
                         !read.empty() && read.back() == byte;
    const bool dropped = (i == first || i == last) && !(keep_lone_quote && first == last);
    if (!repeats && !dropped) {
      read.push_back(byte);
    }
  }
  return read;
}

inline void plain_like(const std::string& input, Texts& patterns) {
  Reading read = read_plainly(input, false);
  read.emplace_back(' ', false);
  std::string term;
  for (const auto& [byte, quoted] : read) {
    if (quoted || (byte != ' ' && byte != '+')) {
      term += byte == '\'' ? "''" : std::string(1, byte);
    } else if (byte == '+') {
      term += term.empty() ? "" : "%%";
    } else if (!term.empty()) {
      term.resize(term.size() - (term.ends_with("%%") ? 2 : 0));
      if (std::find(patterns.begin(), patterns.end(), term) == patterns.end()) {
        patterns.push_back(term);
      }
      term.clear();
    }
  }
}

// The place of a text that begins with a bar which the user did not type, or npos.
inline std::size_t find_bar(const std::string& text, std::string_view wanted, std::size_t at = 0) {
  for (; (at = text.find(wanted, at)) != text.npos; ++at) {
    std::size_t before = at;
    for (; before > 0 && text[before - 1] == '\\'; --before) {
    }
    if ((at - before) % 2 == 0) {
      return at;
    }
  }
  return text.npos;
}

inline void plain_regex(const std::string& input, std::string& output) {
  for (const auto& [byte, quoted] : read_plainly(input, true)) {
    if (!quoted && (byte == ' ' || byte == '+')) {
      output += byte == ' ' ? "|" : ".*";
    } else {
      output.append(std::string_view(".?^|+*\\[]()$").find(byte) != output.npos ? "\\" : "");
      output += byte;
    }
  }
  const bool tidied = output.size() > 3;
  output.erase(0, tidied && output.starts_with(".*|") ? 3 : 0);
  for (std::size_t at; tidied && (at = find_bar(output, "|.*|")) != output.npos;) {
    output.erase(at, 3);
  }
  const bool has_tail = tidied && output.size() > 3 && output.ends_with("|.*") &&
                        find_bar(output, "|.*", output.size() - 3) != output.npos;
  output.resize(output.size() - (has_tail ? 3 : 0));
}

}  // namespace fuzz
