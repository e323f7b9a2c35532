#include "sqlite/internal/statement_runner.h"

#include <sqlite3.h>

#include "base/sql_quote.h"

namespace orvaneip {

void Finalize::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

int StatementRunner::run_rest() {
  while (*rest_ != '\0') {
    sqlite3_stmt* prepared = nullptr;
    const char* tail = nullptr;
    int result = sqlite3_prepare_v2(db_, rest_, -1, &prepared, &tail);
    const Statement statement(prepared);
    if (result == SQLITE_OK && statement != nullptr) {
      result = run(statement.get());
    }
    if (result != SQLITE_OK) {
      return result;
    }
    rest_ = tail;
  }
  return SQLITE_OK;
}

int StatementRunner::run(sqlite3_stmt* statement) {
  const std::vector<std::string> names = names_;
  const std::size_t count = cells_.size();
  int result = SQLITE_OK;
  do {
    result = sqlite3_step(statement);
  } while (result == SQLITE_ROW && keep_row(statement));
  if (result == SQLITE_DONE) {
    return SQLITE_OK;
  }
  names_ = names;
  cells_.resize(count);
  return result == SQLITE_ROW ? (rows_differ_ ? SQLITE_ERROR : SQLITE_NOMEM) : result;
}

bool StatementRunner::keep_row(sqlite3_stmt* statement) {
  const int columns = sqlite3_column_count(statement);
  for (int i = 0; cells_.empty() && i < columns; ++i) {
    names_.emplace_back(sqlite3_column_name(statement, i));
  }
  rows_differ_ = names_.size() != static_cast<std::size_t>(columns);
  for (int i = 0; !rows_differ_ && i < columns; ++i) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
    if (text == nullptr && sqlite3_errcode(db_) == SQLITE_NOMEM) {
      return false;
    }
    cells_.push_back(text != nullptr ? std::optional<std::string>(text) : std::nullopt);
  }
  return !rows_differ_;
}

const char* StatementRunner::error() const {
  return rows_differ_ ? "sqlite3_get_table() called with two or more incompatible queries"
                      : sqlite3_errmsg(db_);
}

std::string StatementRunner::rows_query() const {
  if (cells_.empty()) {
    return "SELECT 0 WHERE 0";
  }
  std::string query = "SELECT ";
  for (std::size_t i = 0; i < names_.size(); ++i) {
    query += (i == 0 ? "column" : ",column") + std::to_string(i + 1) + " AS " +
             base::sql_quoted(names_[i], '"');
  }
  query += " FROM (VALUES";
  for (std::size_t i = 0; i < cells_.size(); ++i) {
    const bool first_of_row = i % names_.size() == 0;
    query += first_of_row ? (i == 0 ? "(" : "),(") : ",";
    query += cells_[i] ? base::sql_quoted(*cells_[i], '\'') : "NULL";
  }
  return query += "))";
}

}  // namespace orvaneip
