#include "schema/load_schema.h"

#include <optional>
#include <string>
#include <vector>

#include "base/sql_quote.h"
#include "platform/log_sinks.h"
#include "schema/internal/column_list.h"
#include "schema/internal/type_word.h"
#include "sqlite/csqlite.h"

namespace {

constexpr char kFunction[] = "devcfg_load_table_schema";
constexpr int kTextLengthMax = static_cast<int>(kColumnTextBytes) - 1;
// The value of "hidden" in PRAGMA table_xinfo for a hidden column of a virtual table.
constexpr int kHidden = 1;

struct Column {
  std::string name;
  std::string type;
};

// Returns the value of a column in the current row. QGetStringByName1 would not distinguish an
// empty value from exhausted memory.
std::string value_of(CSqlite& db, const char* column) {
  const int index = db.getColumnIndex(column);
  const char* value =
      index < 0 ? nullptr : db.result_table[(db.cursor + 1) * db.column_count + index];
  return value != nullptr ? value : "";
}

// Fails also when the query gave up on a lock: it has no result then.
bool query(CSqlite& db, const std::string& sql) {
  if (db.QuerySQL(sql.c_str()) && db.result_table != nullptr) {
    return true;
  }
  orvane_log_debug("[%s] QuerySQL Error", kFunction);
  return false;
}

// Returns the table's CREATE statement.
std::optional<std::string> read_statement(CSqlite& db, const std::string& table, const char* path) {
  if (!query(db, "select * from sqlite_master where type='table' and name=" +
                     base::sql_quoted(table, '\''))) {
    return std::nullopt;
  }
  if (db.QTotalRecords() == 0) {
    orvane_log_debug("[%s] No target table in db: %s", kFunction, path);
    return std::nullopt;
  }
  return value_of(db, "sql");
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
      const std::string name = value_of(db, "name");
      columns.push_back({name, written.word_of(name, value_of(db, "type"))});
    }
  }
  return columns;
}

table_info* as_list(const std::vector<Column>& columns) {
  orvaneip::ColumnList list = orvaneip::new_column_list(static_cast<int>(columns.size()));
  for (std::size_t i = 0; list != nullptr && i < columns.size(); ++i) {
    const Column& column = columns[i];
    if (column.name.size() >= kColumnTextBytes || column.type.size() >= kColumnTextBytes) {
      orvane_log_debug("[%s] Column %.*s: the name or the type word %.*s is longer than %d bytes",
                       kFunction, kTextLengthMax, column.name.c_str(), kTextLengthMax,
                       column.type.c_str(), kTextLengthMax);
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
