// Runs the statements of an SQL text one by one, so that after a lock no statement has to run
// twice.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace orvaneip {

struct Finalize {
  void operator()(sqlite3_stmt* statement) const;
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

class StatementRunner {
 public:
  // `text` must live as long as this object.
  StatementRunner(sqlite3* db, const char* text) : db_(db), rest_(text) {}

  // Runs the statements that have not run yet. Returns SQLITE_OK when nothing is left. After any
  // other result the next call continues with the statement that did not finish.
  int run_rest();

  // Returns SQLite's message on the last failure.
  const char* error() const;

  // Returns a query of constants that gives the rows of all statements so far, with the column
  // names of the first of them: the result of sqlite3_get_table for the whole text.
  std::string rows_query() const;

 private:
  int run(sqlite3_stmt* statement);
  bool keep_row(sqlite3_stmt* statement);

  sqlite3* db_;
  const char* rest_;
  bool rows_differ_ = false;
  std::vector<std::string> names_;
  std::vector<std::optional<std::string>> cells_;
};

}  // namespace orvaneip
