#include "schema/load_schema.h"

#include <optional>
#include <string>
#include <vector>

#include "base/sql_quote.h"
#include "sqlite/csqlite.h"
#include "platform/log_sinks.h"
#include "schema/internal/column_list.h"
#include "schema/internal/type_word.h"

namespace {

constexpr char kFunction[] = "devcfg_load_table_schema";
// In the column "hidden" of PRAGMA table_xinfo: a virtual table's hidden column.
constexpr int kHidden = 1;

struct Column {
  std::string name;
  std::string type;
};

// In the current row. Not through a copy: that could not tell an empty text from no memory.
std::string text_of(CSqlite& db, const char* column) {
  const int index = db.getColumnIndex(column);
  const char* text =
      index < 0 ? nullptr : db.result_table[(db.cursor + 1) * db.column_count + index];
  return text != nullptr ? text : "";
}

// A query that only gave up on a lock has no result, and counts as failed here.
bool query(CSqlite& db, const std::string& sql) {
  if (db.QuerySQL(sql.c_str()) && db.result_table != nullptr) {
    return true;
  }
  orvane_log_debug("[%s] QuerySQL Error", kFunction);
  return false;
}

// The table's CREATE statement.
std::optional<std::string> read_statement(CSqlite& db, const std::string& table, const char* path) {
  if (!query(db, "select * from sqlite_master where type='table' and name=" +
                     base::sql_quoted(table, '\''))) {
    return std::nullopt;
  }
  if (db.QTotalRecords() == 0) {
    orvane_log_debug("[%s] No target table in db: %s", kFunction, path);
    return std::nullopt;
  }
  return text_of(db, "sql");
}

std::optional<std::vector<Column>> read_columns(CSqlite& db, const std::string& table,
                                                const std::string& statement) {
  if (!query(db, "PRAGMA main.table_xinfo(" + base::sql_quoted(table, '\'') + ")")) {
    return std::nullopt;
  }
  std::vector<Column> columns;
  orvaneip::WrittenTypes written(statement);
  for (; !db.QEof(); db.QNext()) {
    int hidden = 0;
    db.QGetIntegerByName("hidden", &hidden);
    if (hidden != kHidden) {
      const std::string name = text_of(db, "name");
      columns.push_back({name, written.word_of(name, text_of(db, "type"))});
    }
  }
  return columns;
}

table_info* as_list(const std::vector<Column>& columns) {
  orvaneip::ColumnList list = orvaneip::new_column_list(static_cast<int>(columns.size()));
  for (std::size_t i = 0; list != nullptr && i < columns.size(); ++i) {
    const Column& column = columns[i];
    if (column.name.size() >= kColumnTextBytes || column.type.size() >= kColumnTextBytes) {
      orvane_log_debug(
          "[%s] Column %.127s: the name or the type word %.127s is longer than %zu bytes",
          kFunction, column.name.c_str(), column.type.c_str(), kColumnTextBytes - 1);
      return nullptr;
    }
    orvaneip::set_column(*list, static_cast<int>(i), column.name.c_str(), column.type.c_str());
  }
  return list.release();
}

}  // namespace

table_info* devcfg_load_table_schema(char* path, char* table) {
  CSqlite db(nullptr);
  if (!db.openDatabase(path)) {
    orvane_log_debug("[%s] Open database Error, %s.", kFunction, path != nullptr ? path : "(null)");
    return nullptr;
  }
  if (table == nullptr) {
    orvane_log_debug("[%s] No target table in db: %s", kFunction, path);
    return nullptr;
  }
  const auto statement = read_statement(db, table, path);
  const auto columns = statement ? read_columns(db, table, *statement) : std::nullopt;
  return columns ? as_list(*columns) : nullptr;
}
