// The plain SQLite interface: the library's results are compared with its own.
#pragma once

#include <sqlite3.h>

#include <optional>
#include <string>
#include <vector>

namespace test {

// The result of sqlite3_get_table: the column names, then row after row; no value for NULL.
struct SqlTable {
  int rows = 0;
  int columns = 0;
  std::vector<std::optional<std::string>> cells = {};

  bool operator==(const SqlTable&) const = default;
  const std::optional<std::string>& at(int row, int column) const {
    return cells[static_cast<std::size_t>((row + 1) * columns + column)];
  }
};

// Returns the table that a char** of that shape contains.
inline SqlTable sql_table(char** cells, int rows, int columns) {
  SqlTable table{rows, columns};
  for (char** cell = cells; cell != cells + (rows + 1) * columns; ++cell) {
    table.cells.push_back(*cell != nullptr ? std::optional<std::string>(*cell) : std::nullopt);
  }
  return table;
}

struct BareSqlite {
  explicit BareSqlite(const std::string& path) { sqlite3_open(path.c_str(), &db); }
  ~BareSqlite() { sqlite3_close(db); }
  BareSqlite(const BareSqlite&) = delete;

  // Returns SQLite's result code.
  int exec(const std::string& sql) const {
    return sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
  }

  // Returns the result of the statements; no value when one fails.
  std::optional<SqlTable> query(const std::string& sql) const {
    char** cells = nullptr;
    SqlTable size;
    if (sqlite3_get_table(db, sql.c_str(), &cells, &size.rows, &size.columns, nullptr) != 0) {
      return std::nullopt;
    }
    SqlTable table = sql_table(cells, size.rows, size.columns);
    sqlite3_free_table(cells);
    return table;
  }

  sqlite3* db = nullptr;
};

}  // namespace test
