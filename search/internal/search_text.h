// Reading a line of search text: terms separated by spaces, a plus sign between parts of a term,
// and one phrase between the first and the last double quote that is taken literally.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvaneip {

struct SearchText {
  std::string text;                 // without the spaces around it
  std::ptrdiff_t first_quote = -1;  // places of double quotes in `text`, -1: there is none
  std::ptrdiff_t last_quote = -1;

  bool has_phrase() const { return first_quote != last_quote; }
};

// Copies the input, which may be part of what the patterns are written to. Null is read as an empty
// text. Only the space itself is trimmed, no other white space.
SearchText read_search_text(const char* input);

enum class LoneQuote { kDropped, kText };

// Of a run of spaces or of plus signs outside the phrase only the first counts.
inline bool repeats(char byte, char previous) {
  return byte == previous && (byte == ' ' || byte == '+');
}

// Hands the text to the writer, in order: terms(bytes, previous) for what is outside the phrase,
// where `previous` is the byte before it in the sense of repeats(), 0 for none, and phrase(bytes).
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
