#include "base/sql_tokens.h"

#include <algorithm>

namespace base {
namespace {

constexpr std::string_view kWhitespace = " \t\n\v\f\r";
constexpr std::string_view kOpeningMarks = "\"'`[";

char closing_mark(char opening) { return opening == '[' ? ']' : opening; }

bool is_in_word(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= '0' && byte <= '9') || byte == '_' || byte == '$' ||
         static_cast<unsigned char>(byte) >= 0x80;
}

// Returns the length of the text up to the end of the first `end` at or after `from`.
std::size_t length_with(std::string_view text, std::string_view end, std::size_t from) {
  const std::size_t found = text.find(end, from);
  return found != std::string_view::npos ? found + end.size() : text.size();
}

// Returns the length of the whitespace and comments at the start of `text`.
std::size_t gap_length(std::string_view text) {
  std::size_t length = 0;
  for (;;) {
    length = std::min(text.find_first_not_of(kWhitespace, length), text.size());
    const std::string_view mark = text.substr(length, 2);
    if (mark == "/*") {
      length = length_with(text, "*/", length + 2);
    } else if (mark == "--") {
      length = length_with(text, "\n", length);
    } else {
      return length;
    }
  }
}

// A doubled mark does not end the text; "]" cannot be doubled.
std::size_t quoted_length(std::string_view text) {
  const char mark = closing_mark(text.front());
  std::size_t length = length_with(text, {&mark, 1}, 1);
  while (mark != ']' && length < text.size() && text[length] == mark) {
    length = length_with(text, {&mark, 1}, length + 1);
  }
  return length;
}

std::size_t token_length(std::string_view text) {
  if (kOpeningMarks.find(text.front()) != std::string_view::npos) {
    return quoted_length(text);
  }
  const auto end = std::find_if_not(text.begin(), text.end(), is_in_word);
  return std::max<std::size_t>(static_cast<std::size_t>(end - text.begin()), 1);
}

}  // namespace

bool SqlToken::is_quoted() const {
  return !text.empty() && kOpeningMarks.find(text.front()) != std::string_view::npos;
}

std::string SqlToken::name() const {
  if (!is_quoted()) {
    return std::string(text);
  }
  const char mark = closing_mark(text.front());
  std::string name;
  for (std::size_t i = 1; i < text.size(); ++i) {
    // Of two marks the second one is part of the name; a single one is the end.
    if (text[i] != mark || (++i < text.size() && text[i] == mark)) {
      name += text[i];
    }
  }
  return name;
}

bool SqlToken::touches(const SqlToken& next) const {
  return text.data() + text.size() == next.text.data();
}

SqlToken SqlTokens::next() {
  rest_.remove_prefix(gap_length(rest_));
  if (rest_.empty()) {
    return {};
  }
  const SqlToken token = {rest_.substr(0, token_length(rest_))};
  rest_.remove_prefix(token.text.size());
  return token;
}

}  // namespace base
