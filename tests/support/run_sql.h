// SQL on a database file, without the library.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/bare_sqlite.h"

namespace test {

// Runs the statements. Returns their first value.
inline std::string run_sql(const std::string& file, const std::string& statements) {
  const std::optional<SqlTable> answer = BareSqlite(file).query(statements);
  EXPECT_TRUE(answer) << statements;
  return answer && answer->rows > 0 ? answer->at(0, 0).value_or("") : "";
}

}  // namespace test
