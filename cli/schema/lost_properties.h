// What the wanted layout of a table has and added columns cannot get.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "orvaneip.h"

namespace devcfg {

struct LostProperties {
  // Of each column of the table, in words: PRIMARY KEY, UNIQUE, UNIQUE INDEX, NOT NULL, DEFAULT,
  // REFERENCES with its actions, GENERATED, and the type of a column of `missing` that is more than
  // its type word. A column without any is not there.
  std::map<std::string, std::vector<std::string>> of_columns;
  // Of the table, as keywords: STRICT, WITHOUT ROWID, and what its CREATE statement holds of
  // AUTOINCREMENT, CHECK, COLLATE and DEFERRABLE: SQLite does not tell which column has it.
  std::vector<std::string> of_table;
};

// Of `table` in the file `path`. Throws Refusal when it cannot be read.
LostProperties read_lost_properties(const std::string& path, const std::string& table,
                                    const table_info& missing);

}  // namespace devcfg
