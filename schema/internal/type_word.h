// The first word of a column's declared type.
#pragma once

#include <string>
#include <string_view>

#include "base/sql_tokens.h"

namespace orvaneip {

// The text up to the first white space behind its start, but for white space inside brackets, which
// is left out: "UNSIGNED BIG INT" gives UNSIGNED, "DECIMAL(10, 2)" gives DECIMAL(10,2).
std::string type_word(std::string_view declared_type);

// The type words of a table, asked column by column, in the table's order. SQLite tells the common
// types in upper case, however they are spelled, and others with their comments, but quoted ones
// without their quotes; this reads them from the CREATE statement.
class WrittenTypes {
 public:
  explicit WrittenTypes(std::string_view create_statement);

  // The type word of the next column. `declared_type` is what SQLite tells: whether there is a
  // type; and its word is the answer when the statement does not have the column in this place, and
  // from then on (the columns of a virtual table are not in it).
  std::string word_of(std::string_view name, std::string_view declared_type);

 private:
  std::string read_word();
  void pass_column();

  base::SqlTokens tokens_;
  base::SqlToken token_;  // the first one of the next column
};

}  // namespace orvaneip
