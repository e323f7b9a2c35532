#include "tests/support/bare_sqlite.h"

#include <sqlite3.h>

#include <stdexcept>

namespace test {

SqlTable sql_table(char** cells, int rows, int columns) {
  SqlTable table{rows, columns, {}};
  for (int i = 0; i < (rows + 1) * columns; ++i) {
    table.cells.push_back(cells[i] != nullptr ? std::optional<std::string>(cells[i])
                                              : std::nullopt);
  }
  return table;
}

BareSqlite::BareSqlite(const std::string& path) {
  if (sqlite3_open(path.c_str(), &db_) != SQLITE_OK) {
    throw std::runtime_error("cannot open " + path);
  }
}

BareSqlite::~BareSqlite() { sqlite3_close(db_); }

int BareSqlite::exec(const std::string& sql) const {
  return sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr);
}

std::optional<SqlTable> BareSqlite::query(const std::string& sql) const {
  char** cells = nullptr;
  int rows = 0;
  int columns = 0;
  if (sqlite3_get_table(db_, sql.c_str(), &cells, &rows, &columns, nullptr) != SQLITE_OK) {
    return std::nullopt;
  }
  SqlTable table = sql_table(cells, rows, columns);
  sqlite3_free_table(cells);
  return table;
}

}  // namespace test
