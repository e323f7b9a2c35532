#include "schema/internal/type_word.h"

#include <cstring>

namespace orvaneip {
namespace {

constexpr std::string_view kSqlWhitespace = " \t\n\v\f\r";

bool is_whitespace(char byte) { return kSqlWhitespace.find(byte) != std::string_view::npos; }

// SQLite removes "GENERATED ALWAYS" from the end of a type, even where it is part of a longer word.
bool is_in_type(const std::string& word, std::string_view declared_type) {
  return strcasestr(std::string(declared_type).c_str(), word.substr(0, word.find('(')).c_str());
}

}  // namespace

std::string type_word(std::string_view declared_type) {
  std::string word;
  int depth = 0;
  for (const char byte : declared_type) {
    if (!is_whitespace(byte)) {
      depth += byte == '(' ? 1 : byte == ')' ? -1 : 0;
      word += byte;
    } else if (!word.empty() && depth <= 0) {
      break;
    }
  }
  return word;
}

WrittenTypes::WrittenTypes(std::string_view create_statement) : tokens_(create_statement) {
  do {
    token_ = tokens_.next();
  } while (!token_.text.empty() && token_.text != "(");
  token_ = tokens_.next();
}

std::string WrittenTypes::word_of(std::string_view name, std::string_view declared_type) {
  if (token_.text.empty() || token_.name() != name) {
    token_ = {};
    return type_word(declared_type);
  }
  token_ = tokens_.next();
  // The module of a virtual table declares types that the statement does not contain.
  const bool is_written = token_.text != "," && token_.text != ")";
  std::string word = declared_type.empty() ? ""
                     : is_written          ? read_word()
                                           : type_word(declared_type);
  pass_column();
  return is_in_type(word, declared_type) ? word : type_word(declared_type);
}

// Brackets are part of the word when nothing is between them.
std::string WrittenTypes::read_word() {
  const base::SqlToken first = token_;
  std::string type = first.name();
  token_ = tokens_.next();
  if (first.touches(token_) && token_.text == "(") {
    for (bool ended = false; !ended; token_ = tokens_.next()) {
      type += token_.text;
      ended = token_.text.empty() || token_.text == ")";
    }
  }
  return type_word(type);
}

void WrittenTypes::pass_column() {
  int depth = 0;
  while (!token_.text.empty() && (depth > 0 || token_.text != ",")) {
    depth += token_.text == "(" ? 1 : token_.text == ")" ? -1 : 0;
    token_ = tokens_.next();
  }
  token_ = tokens_.next();
}

}  // namespace orvaneip
