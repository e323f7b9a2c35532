// The first word of a column's declared type.
#pragma once

#include <string>
#include <string_view>

namespace orvaneip {

// The word ends at white space or a comment, but not inside brackets, where both are left out:
// "UNSIGNED BIG INT" gives UNSIGNED, "DECIMAL(10, 2)" gives DECIMAL(10,2). Brackets behind white
// space are no part of it.
std::string type_word(std::string_view declared_type);

// SQLite tells the common types in upper case, however the CREATE statement spells them. This gives
// type words as the statement does, asked column by column, in the table's order.
class WrittenTypes {
 public:
  explicit WrittenTypes(std::string_view create_statement);

  // `word` as it is written behind `name`; unchanged when it is not found there, and from then on:
  // so the statement is searched once, however it was made.
  std::string spelled(std::string_view name, const std::string& word);

 private:
  std::string_view statement_;
  std::size_t from_;  // behind the last type word found
};

}  // namespace orvaneip
