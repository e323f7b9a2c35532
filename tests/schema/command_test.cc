#include <gtest/gtest.h>

#include "tests/support/bare_sqlite.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

TEST(SchemaCommand, Table) {
  const test::TempFolder folder;
  const std::string current = folder.file("current.db"), wanted = folder.file("wanted.db");
  const std::string clash = folder.file("clash.db"), none = folder.file("none.db");
  ASSERT_EQ(test::BareSqlite(current).exec("CREATE TABLE t(a integer)"), 0);
  ASSERT_EQ(test::BareSqlite(clash).exec("CREATE TABLE t(a, F)"), 0);
  const std::string full = folder.file("full.db");
  std::string columns;  // 1997, of the 2000 that SQLite allows
  for (int i = 1000; i < 2997; ++i) {
    columns.append("c").append(std::to_string(i)).append(",");
  }
  ASSERT_EQ(test::BareSqlite(full).exec("CREATE TABLE t(" + columns + "a)"), 0);
  ASSERT_EQ(test::BareSqlite(wanted).exec(
                "CREATE TABLE t(a integer, b TEXT UNIQUE NOT NULL DEFAULT 'x',"
                "\"c d\" DECIMAL(10, 2), e BIG INT CHECK(1) REFERENCES q ON DELETE CASCADE,"
                "f/*DEFERRABLE*/ AS (1), g COLLATE NOCASE PRIMARY KEY, UNIQUE(b, e));"
                "CREATE UNIQUE INDEX i ON t(g)"),
            0);
  const std::string missing =
      "MISSING COLUMN TYPE          CANNOT BE ADDED\n"
      "b              TEXT          NOT NULL, DEFAULT 'x', UNIQUE (b, e), UNIQUE\n"
      "c d            DECIMAL(10,2) \n"
      "e              BIG           type BIG INT, UNIQUE (b, e), REFERENCES q ON DELETE CASCADE\n"
      "f                            GENERATED\n"
      "g                            PRIMARY KEY, UNIQUE INDEX\n";
  const std::string note =
      "devcfg: the wanted table also has, and added columns do not get: CHECK, COLLATE\n";
  const std::string plan =
      "ALTER TABLE t ADD b TEXT;\nALTER TABLE t ADD \"c d\" DECIMAL(10,2);\n"
      "ALTER TABLE t ADD e BIG;\nALTER TABLE t ADD f;\nALTER TABLE t ADD g;\n";
  // Arguments, exit status, output and errors, in this order.
  const std::tuple<std::vector<std::string>, int, std::string, std::string> kRows[] = {
      {{"show", current, "t"}, 0, "COLUMN TYPE\na      integer\n", ""},
      {{"show", none, "t"}, 1, "", "devcfg: cannot read " + none + "\n"},
      {{"upgrade", current, "t", wanted, "--dry-run"}, 0, plan, ""},
      {{"diff", current, "t", wanted}, 1, missing, note},
      {{"upgrade", current, "t", wanted}, 0, plan, ""},
      {{"diff", current, "t", wanted, "--json"}, 0, "[\n]\n", ""},
      {{"upgrade", full, "t", wanted},
       1,
       "",
       "devcfg: column e could not be added (--log tells why); added before it: 2\n"},
      {{"upgrade", clash, "t", wanted, "--dry-run"},
       1,
       "",
       "devcfg: column f cannot be added: SQLite takes its name for the column F; nothing was "
       "changed\n"}};
  for (auto [arguments, exit_status, output, errors] : kRows) {
    arguments.insert(arguments.begin(), "schema");
    const test::Outcome outcome = test::run(ORVANEIP_DEVCFG, arguments);
    EXPECT_EQ(outcome.exit_status, exit_status);
    EXPECT_EQ(outcome.output + outcome.errors, output + errors);
  }
  EXPECT_THROW(test::read_file(none), std::runtime_error);
}
