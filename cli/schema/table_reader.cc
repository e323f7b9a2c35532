#include "cli/schema/table_reader.h"

#include <cstdlib>

#include "cli/command_error.h"

namespace devcfg {
TableReader::TableReader(const std::string& path, const std::string& table)
    : path_(path), db_(path.c_str()) {
  // SQLite would create it.
  if (!check_file_exist(path_.data()) || !db_.openDatabase(nullptr)) {
    throw CommandError("cannot read " + path);
  }
  run("SELECT rowid AS id, name FROM sqlite_master WHERE type='table'");
  for (; !at_end() && text("name") != table; next()) {
  }
  if (at_end()) {
    throw CommandError(path + " has no table " + table);
  }
  row_ = text("id");
}

void TableReader::query(const std::string& columns, const std::string& source) {
  run("SELECT " + columns + " FROM sqlite_master m, " + source + " WHERE m.rowid=" + row_);
}

// A query that gave up on a lock succeeds without a result.
void TableReader::run(const std::string& sql) {
  if (!db_.QuerySQL(sql.c_str())) {
    throw CommandError(path_ + " is not an SQLite database that can be read (--log shows why)");
  }
  if (db_.result_table == nullptr) {
    throw CommandError(path_ + " stays locked by another program");
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
