// The tokens of an SQL text, as far as reading a CREATE TABLE statement needs them.
#pragma once

#include <string>
#include <string_view>

namespace base {

struct SqlToken {
  // A quoted name or string with its quotes, a word or a number, or any other single byte; empty
  // after the last token. Points into the SQL text.
  std::string_view text;

  bool is_quoted() const;
  // Returns the text without its quotes.
  std::string name() const;
  // Returns true when nothing separates this token from `next`.
  bool touches(const SqlToken& next) const;
};

// Reads the tokens of a text, which must outlive them.
class SqlTokens {
 public:
  explicit SqlTokens(std::string_view sql) : rest_(sql) {}

  // Returns the next token; whitespace and comments are skipped.
  SqlToken next();

 private:
  std::string_view rest_;
};

}  // namespace base
