// The statements of an SQL text, run one by one, so that a lock met half-way costs no statement a
// second run.
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

class StatementRun {
 public:
  // `text` has to live as long as this object.
  StatementRun(sqlite3* db, const char* text) : db_(db), rest_(text) {}

  // Runs what has not run yet: SQLITE_OK when nothing is left. After any other result the next call
  // goes on with the statement that did not finish.
  int run_rest();

  // SQLite's words on the last failure.
  const char* error() const;

  // A query that yields the rows of all statements so far, under the column names of the first of
  // them, from constants alone: what sqlite3_get_table makes of the whole text.
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
