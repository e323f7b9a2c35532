// The bare SQLite interface: what the library's answers are compared with.
#pragma once

#include <optional>
#include <string>
#include <vector>

struct sqlite3;

namespace test {

// What sqlite3_get_table gives: the column names, then row after row; nothing for NULL.
struct SqlTable {
  int rows = 0;
  int columns = 0;
  std::vector<std::optional<std::string>> cells;

  bool operator==(const SqlTable&) const = default;
  const std::optional<std::string>& at(int row, int column) const {
    return cells[static_cast<std::size_t>((row + 1) * columns + column)];
  }
};

// The table that a char** of that shape holds.
SqlTable sql_table(char** cells, int rows, int columns);

class BareSqlite {
 public:
  explicit BareSqlite(const std::string& path);
  ~BareSqlite();
  BareSqlite(const BareSqlite&) = delete;
  BareSqlite& operator=(const BareSqlite&) = delete;

  // SQLite's result code.
  int exec(const std::string& sql) const;

  // The result of the text's statements; nothing when one fails.
  std::optional<SqlTable> query(const std::string& sql) const;

 private:
  sqlite3* db_ = nullptr;
};

}  // namespace test
