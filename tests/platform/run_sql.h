// SQL on a database file, past the library.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

namespace test {

// Runs the statements. The first column of all that they answer.
inline std::string run_sql(const std::string& file, const std::string& statements) {
  sqlite3* database = nullptr;
  std::string answer;
  const auto take = [](void* text, int, char** columns, char**) {
    static_cast<std::string*>(text)->append(columns[0]);
    return 0;
  };
  EXPECT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, statements.c_str(), take, &answer, nullptr), SQLITE_OK);
  sqlite3_close(database);
  return answer;
}

}  // namespace test
