// Makes SQL statements fail as on a bad disk: those that, with their values, contain the text of
// the environment variable FAILING_STATEMENT. Preloaded into a program.
#include <dlfcn.h>
#include <sqlite3.h>

#include <cstdlib>
#include <cstring>

extern "C" __attribute__((visibility("default"))) int sqlite3_step(sqlite3_stmt* statement) {
  static const auto real_step =
      reinterpret_cast<int (*)(sqlite3_stmt*)>(dlsym(RTLD_NEXT, "sqlite3_step"));
  const char* failing = std::getenv("FAILING_STATEMENT");
  char* sql = sqlite3_expanded_sql(statement);
  const bool fails = failing != nullptr && sql != nullptr && std::strstr(sql, failing) != nullptr;
  sqlite3_free(sql);
  return fails ? SQLITE_IOERR : real_step(statement);
}
