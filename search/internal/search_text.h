// Reading a line of search text: terms separated by spaces, a plus sign between parts of a term,
// and one phrase between the first and the last double quote that is taken literally.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvaneip {

struct SearchText {
  std::string text;                 // without leading and trailing spaces
  std::ptrdiff_t first_quote = -1;  // positions of double quotes in `text`; -1: no quote
  std::ptrdiff_t last_quote = -1;

  bool has_phrase() const { return first_quote != last_quote; }
};

// Copies the input, which may be part of the output. Null is read as an empty text. Only spaces are
// trimmed, no other whitespace.
SearchText read_search_text(const char* input);

enum class LoneQuote { kDropped, kText };

// Returns true for a byte that is not the first of a run of spaces or of plus signs: it is ignored
// outside the phrase.
inline bool repeats(char byte, char previous) {
  return byte == previous && (byte == ' ' || byte == '+');
}

// Passes the text to the writer, in order: terms(bytes, previous) for the bytes outside the phrase,
// where `previous` is the byte before them for repeats(), 0 for none, and phrase(bytes).
template <typename Writer>
void write_search_text(const SearchText& search, LoneQuote lone_quote, Writer& writer) {
  const std::string_view text = search.text;
  const bool has_quote = search.first_quote >= 0;
  if (!has_quote || (!search.has_phrase() && lone_quote == LoneQuote::kText)) {
    return writer.terms(text, '\0');
  }
  const auto first = static_cast<std::size_t>(search.first_quote);
  const auto last = static_cast<std::size_t>(search.last_quote);
  const std::string_view before = text.substr(0, first);
  const bool phrase_is_empty = last <= first + 1;
  writer.terms(before, '\0');
  if (!phrase_is_empty) {
    writer.phrase(text.substr(first + 1, last - first - 1));
  }
  writer.terms(text.substr(last + 1), phrase_is_empty && !before.empty() ? before.back() : '\0');
}

}  // namespace orvaneip
