// Search text by the plain steps: what the search patterns are compared with.
#pragma once

#include <algorithm>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

using Texts = std::vector<std::string>;

// The bytes of the text; a space or a plus sign outside the phrase is "space" or "plus".
inline Texts read_plainly(std::string text, bool keep_lone_quote) {
  text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
  text.erase(text.find_last_not_of(' ') + 1);
  const std::size_t first = text.find('"');
  const std::size_t last = text.rfind('"');
  Texts read;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool counts = (text[i] == ' ' || text[i] == '+') && !(i > first && i < last);
    const std::string piece = !counts ? text.substr(i, 1) : text[i] == ' ' ? "space" : "plus";
    const bool dropped = (i == first || i == last) && !(keep_lone_quote && first == last);
    if (!dropped && !(counts && !read.empty() && read.back() == piece)) {
      read.push_back(piece);
    }
  }
  return read;
}

inline void plain_like(const std::string& input, Texts& patterns) {
  Texts read = read_plainly(input, false);
  read.emplace_back("space");
  std::string term;
  for (const std::string& piece : read) {
    if (piece != "space") {
      term += piece == "'" ? "''" : piece != "plus" ? piece : term.empty() ? "" : "%%";
    } else if (!term.empty()) {
      term.resize(term.size() - (term.ends_with("%%") ? 2 : 0));
      const bool is_new = std::find(patterns.begin(), patterns.end(), term) == patterns.end();
      patterns.insert(patterns.end(), is_new ? 1 : 0, term);
      term.clear();
    }
  }
}

inline std::string plain_regex(const std::string& input) {
  Texts pieces = read_plainly(input, true);
  std::size_t length = 0;
  for (std::string& piece : pieces) {
    const bool escaped = std::string_view(".?^|+*\\[]()$").find(piece) != std::string_view::npos;
    piece = piece == "space" ? "|" : piece == "plus" ? ".*" : escaped ? "\\" + piece : piece;
    length += piece.size();
  }
  // Removes two of the wanted pieces when they stand there.
  const auto tidy = [&, is_long = length > 3](std::size_t at, const Texts& wanted) {
    const auto found = pieces.begin() + static_cast<std::ptrdiff_t>(std::min(at, pieces.size()));
    const bool stands = is_long && pieces.end() - found >= std::ssize(wanted) &&
                        std::equal(wanted.begin(), wanted.end(), found);
    length -= stands ? 3 : 0;
    pieces.erase(found, found + (stands ? 2 : 0));
    return stands;
  };
  tidy(0, {".*", "|"});
  for (std::size_t at = 0; at < pieces.size(); ++at) {
    while (tidy(at, {"|", ".*", "|"})) {
    }
  }
  if (length > 3) {
    tidy(pieces.size() - 2, {"|", ".*"});
  }
  return std::accumulate(pieces.begin(), pieces.end(), std::string());
}

}  // namespace fuzz
