// Properties of the wanted columns and table that ALTER TABLE ADD does not bring.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "orvaneip.h"

namespace devcfg {

struct LostProperties {
  // By column of the table, in words: PRIMARY KEY, UNIQUE, UNIQUE INDEX, NOT NULL, DEFAULT,
  // REFERENCES with its actions, GENERATED, and the type of a column of `missing` that has
  // more than its type word. A column without such properties is not in the map.
  std::map<std::string, std::vector<std::string>> of_columns;
  // Of the table, as keywords: STRICT, WITHOUT ROWID, and those of AUTOINCREMENT, CHECK, COLLATE
  // and DEFERRABLE in its CREATE statement: SQLite does not report which column has them.
  std::vector<std::string> of_table;
};

// Reads them from `table` in the file `path`. Throws CommandError when that is not possible.
LostProperties read_lost_properties(const std::string& path, const std::string& table,
                                    const table_info& missing);

}  // namespace devcfg
