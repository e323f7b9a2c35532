// The statements of CSqlite: a single attempt of each, and the effect of its outcome on the object.
#include <sqlite3.h>

#include <cstdarg>
#include <cstddef>
#include <string>

#include "foundation/logging.h"
#include "sqlite/csqlite.h"
#include "sqlite/internal/busy_retry.h"
#include "sqlite/internal/statement_runner.h"

namespace {

using orvaneip::is_busy;
using orvaneip::retry_while_busy;

constexpr char kNotOpen[] = "the database is not open";
constexpr char kNullArgument[] = "an argument is null";

const char* connection_error(const CSqlite& object) {
  return object.db != nullptr ? sqlite3_errmsg(object.db) : kNotOpen;
}

const char* statement_error(const CSqlite& object) {
  return object.err_msg != nullptr ? object.err_msg : connection_error(object);
}

void reset_result(CSqlite& object) {
  object.cursor = 0;
  object.row_count = 0;
  object.column_count = 0;
  object.freeResult();
}

// Returns the outcome of an attempt with this result; nothing when it met a lock. A failure is
// logged and closes the connection.
template <typename LogFailure>
std::optional<bool> outcome_of(CSqlite& object, int result, LogFailure log_failure) {
  const bool failed = result != SQLITE_OK && !is_busy(result);
  if (failed) {
    log_failure();
  }
  sqlite3_free(object.err_msg);
  object.err_msg = nullptr;
  if (failed) {
    object.closeDatabase();
  }
  return is_busy(result) ? std::nullopt : std::optional<bool>(!failed);
}

// The statement contains the name as it is given. Where a quote would end the literal, the name is
// cut after that quote. The literal has no end then, so SQLite refuses the statement, and what
// follows the quote never runs as SQL.
std::string sequence_query(const char* table) {
  std::string name(table);
  for (std::size_t quote = name.find('\''); quote != std::string::npos;
       quote = name.find('\'', quote + 2)) {
    if (name[quote + 1] != '\'') {
      name.erase(quote + 1);
      break;
    }
  }
  return "SELECT seq FROM sqlite_sequence WHERE name='" + name + "'";
}

int read_sequence(CSqlite& object) {
  int value = 0;
  return object.QGetIntegerByName("seq", &value) ? value : -1;
}

// Binds the values to the parameters in order. Returns the result of the first one that SQLite
// refuses; values beyond the parameters are ignored.
int bind_values(sqlite3_stmt* statement, va_list values) {
  int result = SQLITE_OK;
  for (int index = 1; result == SQLITE_OK; ++index) {
    const char* value = va_arg(values, const char*);
    if (value == nullptr) {
      break;
    }
    result = sqlite3_bind_text(statement, index, value, -1, SQLITE_STATIC);
  }
  return result == SQLITE_RANGE ? SQLITE_OK : result;
}

// Makes one attempt of Parametrized_ExecSQL. Returns nothing when it met a lock.
std::optional<bool> exec_with_values(CSqlite& object, const char* sql, va_list values) {
  sqlite3_stmt* prepared = nullptr;
  object.last_rc = sqlite3_prepare_v2(object.db, sql, -1, &prepared, nullptr);
  const orvaneip::Statement statement(prepared);
  if (is_busy(object.last_rc)) {
    return std::nullopt;
  }
  if (object.last_rc != SQLITE_OK) {
    LogDebug("[CSqlite] sqlite3_prepare_v2 error: %s\n", connection_error(object));
    return false;
  }
  object.last_rc = bind_values(statement.get(), values);
  if (object.last_rc == SQLITE_OK) {
    object.last_rc = sqlite3_step(statement.get());
  }
  if (is_busy(object.last_rc)) {
    return std::nullopt;
  }
  if (object.last_rc != SQLITE_DONE) {
    LogDebug("[CSqlite] sqlite3_step error: %s\n", connection_error(object));
    return false;
  }
  return true;
}

}  // namespace

bool CSqlite::ExecSQL(const char* sql) {
  if (sql == nullptr) {
    LogDebug("[CSqlite] ExecSQL error: %s\n", kNullArgument);
    return false;
  }
  return retry_while_busy([&] {
    last_rc = sqlite3_exec(db, sql, nullptr, nullptr, &err_msg);
    return outcome_of(*this, last_rc,
                      [&] { LogDebug("[CSqlite] ExecSQL error: %s\n", statement_error(*this)); });
  });
}

int CSqlite::ExecSQL(const char* sql, char* table) {
  if (sql == nullptr || table == nullptr) {
    LogDebug("[CSqlite] exec sql error: %s", kNullArgument);
    return -1;
  }
  const std::string text = std::string(sql) + "; " + sequence_query(table);
  orvaneip::StatementRunner statements(db, text.c_str());
  reset_result(*this);
  int result = SQLITE_OK;
  retry_while_busy([&] {
    result = statements.run_rest();
    return outcome_of(*this, result, [&] {
      LogDebug("[CSqlite] exec sql error: %s", db != nullptr ? statements.error() : kNotOpen);
    });
  });
  const bool done = result == SQLITE_OK && QuerySQL(statements.rows_query().c_str());
  return done ? read_sequence(*this) : -1;
}

bool CSqlite::Parametrized_ExecSQL(const char* sql, ...) {
  if (sql == nullptr) {
    LogDebug("[CSqlite] sqlite3_prepare_v2 error: %s\n", kNullArgument);
    return false;
  }
  va_list values;
  va_start(values, sql);
  const bool done = retry_while_busy([&] {
    va_list again;
    va_copy(again, values);
    const std::optional<bool> outcome = exec_with_values(*this, sql, again);
    va_end(again);
    return outcome;
  });
  va_end(values);
  return done;
}

bool CSqlite::QuerySQL(const char* sql) {
  if (sql == nullptr) {
    LogDebug("[CSqlite] exec sql error: %s", kNullArgument);
    return false;
  }
  reset_result(*this);
  return retry_while_busy([&] {
    const int result =
        sqlite3_get_table(db, sql, &result_table, &row_count, &column_count, &err_msg);
    return outcome_of(*this, result,
                      [&] { LogDebug("[CSqlite] exec sql error: %s", statement_error(*this)); });
  });
}

int CSqlite::GetLastSequence(char* table) {
  if (table == nullptr) {
    LogDebug("[CSqlite] exec sql error: %s", kNullArgument);
    return -1;
  }
  return QuerySQL(sequence_query(table).c_str()) ? read_sequence(*this) : -1;
}
