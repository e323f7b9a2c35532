// Loads the table of a CREATE TABLE statement and adds its columns to a table in another database.
// The columns are those that SQLite reports, and nothing in them runs as SQL. Input: the statement.
#include <sqlite3.h>
#include <strings.h>

#include <cstring>

#include "fuzz/fuzz.h"
#include "tests/support/bare_sqlite.h"
#include "tests/support/columns.h"

static char wanted_path[] = "file:/wanted?vfs=memdb";
static char current_path[] = "file:/current?vfs=memdb";

extern "C" int LLVMFuzzerInitialize(int*, char***) { return sqlite3_config(SQLITE_CONFIG_URI, 1); }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const test::BareSqlite wanted(wanted_path);
  const test::BareSqlite current(current_path);
  const std::string text(data, data + size);
  // Only the first statement is run. A SELECT may run for ever.
  CSqlite creator(nullptr);
  if (strncasecmp(text.c_str(), "CREATE TABLE", 12) == 0 && !strcasestr(text.c_str(), "SELECT")) {
    creator.openDatabase(wanted_path) && creator.Parametrized_ExecSQL(text.c_str(), nullptr);
  }
  const auto reported = wanted.query(
      "SELECT c.name, c.type, t.name, '\"' || replace(t.name, '\"', '\"\"') || '\"',"
      " max(max(length(CAST(c.name AS BLOB)), length(CAST(c.type AS BLOB)))) OVER ()"
      " FROM sqlite_master t, pragma_table_xinfo(t.name) c WHERE t.rowid = 1");
  if (!reported || reported->rows == 0) {
    return 0;
  }
  std::string table = *reported->at(0, 2);
  const test::Columns columns = test::load(wanted_path, table);
  // SQLite reports a type without the brackets after a quoted name.
  if (columns == nullptr) {
    const std::size_t longest = std::stoul(*reported->at(0, 4)) + fuzz::longest_brackets(text);
    return fuzz::require(longest >= kColumnTextBytes, "only what is too long is refused"), 0;
  }
  test::Texts expected = {{"old", ""}};
  bool fits = table.size() < 200 && reported->rows <= kMaxNewColumns;
  for (int i = 0; i < reported->rows; ++i) {
    const auto& [name, type] = std::tie(*reported->at(i, 0), *reported->at(i, 1));
    fuzz::require(name == columns->col_name[i], "the columns are those of SQLite");
    const std::string word = columns->col_type[i];
    fuzz::require(strcasestr(type.c_str(), word.substr(0, word.find('(')).c_str()),
                  "and so are the types");
    expected.emplace_back(name, word);
    fits = fits && strcasecmp(name.c_str(), "old") != 0;
  }
  current.exec("CREATE TABLE canary(a); CREATE TABLE " + *reported->at(0, 3) + "(old)");
  const test::Columns old = test::load(current_path, table);
  const test::Columns added(devcfg_compare_table_schema(old.get(), columns.get(), nullptr));
  const bool done = devcfg_update_table(added.get(), table.data(), current_path) == 0;
  const test::Texts all = test::texts_of(*test::load(current_path, table));
  fuzz::require(!fits || (done && all == expected), "every column is added");
  const auto left = current.query("SELECT name FROM sqlite_master UNION ALL SELECT a FROM canary");
  fuzz::require(left && left->rows == 2, "nothing runs as SQL");
  return 0;
}
