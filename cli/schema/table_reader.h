// What SQLite reports about a table of a database file.
#pragma once

#include <string>

#include "orvaneip.h"

namespace devcfg {

class TableReader {
 public:
  // `table`: exactly as it is named. Throws CommandError when the file is missing, is locked, is
  // not a database or has no such table.
  TableReader(const std::string& path, const std::string& table);

  // Replaces the rows by those of "SELECT columns FROM source". `source` may name the table as
  // m.name: pragma_table_xinfo(m.name) c. Throws CommandError when it fails.
  void query(const std::string& columns, const std::string& source);

  bool at_end() { return db_.QEof(); }
  void next() { db_.QNext(); }

  // Return a value of the current row: 0 and "" for NULL.
  int number(const char* column);
  std::string text(const char* column);

 private:
  void run(const std::string& sql);

  std::string path_;
  CSqlite db_;
  std::string row_;  // rowid of the table in sqlite_master
};

}  // namespace devcfg
