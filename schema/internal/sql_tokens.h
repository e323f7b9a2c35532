// The tokens of an SQL text, as far as reading a CREATE TABLE statement needs them.
#pragma once

#include <string>
#include <string_view>

namespace orvaneip {

struct SqlToken {
  // A quoted name or text with its quotes, a word or a number, or any other single byte; empty
  // behind the last token. Points into the SQL text.
  std::string_view text;

  bool is_quoted() const;
  // The text without its quotes.
  std::string name() const;
  // True when nothing stands between this token and `next`.
  bool touches(const SqlToken& next) const;
};

class SqlTokens {
 public:
  explicit SqlTokens(std::string_view sql) : rest_(sql) {}

  // The next token; white space and comments are passed over.
  SqlToken next();

 private:
  std::string_view rest_;
};

}  // namespace orvaneip
