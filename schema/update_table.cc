#include "schema/update_table.h"

#include "platform/log_sinks.h"
#include "schema/compare_schema.h"
#include "schema/internal/column_list.h"
#include "schema/internal/sql_name.h"
#include "sqlite/csqlite.h"

namespace {

constexpr char kUpdate[] = "devcfg_update_table";
constexpr char kStatements[] = "devcfg_upgrade_statements";

int refuse(const std::string& reason) {
  orvane_log_debug("[%s] %s", kStatements, reason.c_str());
  return -1;
}

int refuse(const char* column, const char* reason) {
  orvane_log_debug("[%s] Column %.*s: %s", kStatements, static_cast<int>(kColumnTextBytes) - 1,
                   column != nullptr ? column : "(null)", reason);
  return -1;
}

std::string alter_statement(const char* table, const char* name, const char* type) {
  return "ALTER TABLE " + orvaneip::name_in_sql(table) + " ADD " + orvaneip::name_in_sql(name) +
         " " + orvaneip::type_in_sql(type);
}

// ExecSQL also returns true when it gave up on a lock; the column is not added then.
bool add_column(CSqlite& db, const std::string& statement) {
  return db.ExecSQL(statement.c_str()) && db.last_rc == 0;
}

}  // namespace

int devcfg_upgrade_statements(const table_info* columns, const char* table,
                              std::vector<std::string>& statements) {
  if (columns == nullptr || table == nullptr) {
    return refuse("No columns or no table");
  }
  if (columns->col_count > kMaxNewColumns) {
    return refuse(orvaneip::too_many_columns());
  }
  std::vector<std::string> built;
  for (int i = 0; i < columns->col_count; ++i) {
    if (!orvaneip::is_valid_column(*columns, i)) {
      return refuse(columns->col_name != nullptr ? columns->col_name[i] : nullptr,
                    "the name or the type word is missing or has no end");
    }
    const char* name = columns->col_name[i];
    built.push_back(alter_statement(table, name, columns->col_type[i]));
    if (built.back().size() >= kAlterStatementBytes) {
      return refuse(name, "the statement that adds it is too long");
    }
  }
  statements.insert(statements.end(), built.begin(), built.end());
  return 0;
}

int devcfg_update_table(table_info* columns, char* table, char* path) {
  CSqlite db(nullptr);
  if (!db.openDatabase(path)) {
    orvane_log_debug("[%s] Open database Error, %s.", kUpdate, path != nullptr ? path : "(null)");
    return -1;
  }
  std::vector<std::string> statements;
  if (devcfg_upgrade_statements(columns, table, statements) != 0) {
    return -1;
  }
  for (const std::string& statement : statements) {
    if (!add_column(db, statement)) {
      db.closeDatabase();
      orvane_log_debug("[%s] QuerySQL Error", kUpdate);
      return -1;
    }
  }
  return 0;
}
