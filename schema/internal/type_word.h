// The first word of a column's declared type.
#pragma once

#include <string>
#include <string_view>

#include "base/sql_tokens.h"

namespace orvaneip {

// Returns the first word of the type. Whitespace inside brackets does not end it and is left out:
// "UNSIGNED BIG INT" gives UNSIGNED, "DECIMAL(10, 2)" gives DECIMAL(10,2).
std::string type_word(std::string_view declared_type);

// Reads the type words of a table's columns, in the table's order, from its CREATE statement.
// SQLite reports the common types in upper case, however they are spelled, other types with their
// comments, and quoted types without their quotes.
class WrittenTypes {
 public:
  explicit WrittenTypes(std::string_view create_statement);

  // Returns the type word of the next column. `declared_type` is the type that SQLite reports; it
  // is empty when the column has no type. Its first word is the result when the statement does not
  // contain the column at this position (it does not contain the columns of a virtual table), and
  // so for all later columns.
  std::string word_of(std::string_view name, std::string_view declared_type);

 private:
  std::string read_word();
  void pass_column();

  base::SqlTokens tokens_;
  base::SqlToken token_;  // the first token of the next column
};

}  // namespace orvaneip
