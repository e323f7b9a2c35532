// Names of other people's making, put into SQL statements so that they stay names and never become
// SQL.
#pragma once

#include <string>
#include <string_view>

namespace orvaneip {

// The name of a table or column: as it stands when SQLite reads it as a name (letters, digits, "_",
// "$" and bytes from 0x80 on, no digit or "$" in front, no keyword), otherwise between double
// quotes.
std::string name_in_sql(std::string_view name);

// The same for a type word, which may also be a name with one or two numbers in brackets, as
// VARCHAR(20). An empty word stays empty.
std::string type_in_sql(std::string_view word);

}  // namespace orvaneip
