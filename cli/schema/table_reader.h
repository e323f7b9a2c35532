// What SQLite itself tells about a table of a database file.
#pragma once

#include <string>

#include "orvaneip.h"

namespace devcfg {

class TableReader {
 public:
  // Throws Refusal, which tells whether the file is missing, locked, no database, or without such a
  // table. `table`: exactly as it is named.
  TableReader(const std::string& path, const std::string& table);

  // The rows of "SELECT columns FROM source" in its place, where `source` may name the table as
  // m.name: pragma_table_xinfo(m.name) c. Throws Refusal when it fails.
  void query(const std::string& columns, const std::string& source);

  bool at_end() { return db_.QEof(); }
  void next() { db_.QNext(); }

  // Of the row: 0 and "" for NULL.
  int number(const char* column);
  std::string text(const char* column);

 private:
  void run(const std::string& sql);

  std::string path_;
  CSqlite db_;
  std::string row_;  // the table's place in sqlite_master
};

}  // namespace devcfg
