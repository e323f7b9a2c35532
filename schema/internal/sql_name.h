// Writes untrusted names into SQL statements so that they never run as SQL.
#pragma once

#include <string>
#include <string_view>

namespace orvaneip {

// Returns the name of a table or column unchanged when SQLite reads it as a name (letters, digits,
// "_", "$" and bytes from 0x80 on; it does not begin with a digit or "$" and is not a keyword),
// otherwise between double quotes.
std::string name_in_sql(std::string_view name);

// The same for a type word, which may also be a name with one or two numbers in brackets, such as
// VARCHAR(20). An empty word stays empty.
std::string type_in_sql(std::string_view word);

}  // namespace orvaneip
