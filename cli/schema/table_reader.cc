#include "cli/schema/table_reader.h"

#include <cstdlib>

#include "cli/command_error.h"

namespace devcfg {
TableReader::TableReader(const std::string& path, const std::string& table)
    : path_(path), db_(path.c_str()) {
  // SQLite would create it.
  if (!check_file_exist(path_.data()) || !db_.openDatabase(nullptr)) {
    throw Refusal("cannot read " + path);
  }
  run("SELECT rowid AS place, name FROM sqlite_master WHERE type='table'");
  for (; !at_end() && text("name") != table; next()) {
  }
  if (at_end()) {
    throw Refusal(path + " has no table " + table);
  }
  row_ = text("place");
}

void TableReader::query(const std::string& columns, const std::string& source) {
  run("SELECT " + columns + " FROM sqlite_master m, " + source + " WHERE m.rowid=" + row_);
}

// A query that only gave up on a lock has no result.
void TableReader::run(const std::string& sql) {
  if (!db_.QuerySQL(sql.c_str())) {
    throw Refusal(path_ + " is no SQLite database that can be read (--log tells more)");
  }
  if (db_.result_table == nullptr) {
    throw Refusal(path_ + " stays locked by another program");
  }
}

int TableReader::number(const char* column) {
  int value = 0;
  db_.QGetIntegerByName(column, &value);
  return value;
}

std::string TableReader::text(const char* column) {
  char* value = nullptr;
  db_.QGetStringByName1(column, &value);
  std::string copy = value != nullptr ? value : "";
  std::free(value);
  return copy;
}

}  // namespace devcfg
