#include <gtest/gtest.h>

#include "tests/support/bare_sqlite.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

TEST(SchemaCommand, Table) {
  const test::TempFolder folder;
  const std::string current = folder.file("current.db");
  const std::string wanted = folder.file("wanted.db");
  const std::string clash = folder.file("clash.db");
  const std::string none = folder.file("none.db");
  ASSERT_EQ(test::BareSqlite(current).exec("CREATE TABLE t(a integer)"), 0);
  ASSERT_EQ(test::BareSqlite(clash).exec("CREATE TABLE t(a, F)"), 0);
  ASSERT_EQ(test::BareSqlite(wanted).exec(
                "CREATE TABLE t(a integer, b TEXT UNIQUE NOT NULL DEFAULT 'x',"
                "\"c d\" DECIMAL(10, 2), e BIG INT REFERENCES q, f AS (1), g PRIMARY KEY)"),
            0);
  const std::string missing =
      "MISSING COLUMN TYPE          CANNOT BE ADDED\n"
      "b              TEXT          NOT NULL, DEFAULT 'x', UNIQUE\n"
      "c d            DECIMAL(10,2) \n"
      "e              BIG           type BIG INT, REFERENCES q\n"
      "f                            GENERATED\n"
      "g                            PRIMARY KEY\n";
  const std::string plan =
      "ALTER TABLE t ADD b TEXT;\nALTER TABLE t ADD \"c d\" DECIMAL(10,2);\n"
      "ALTER TABLE t ADD e BIG;\nALTER TABLE t ADD f ;\nALTER TABLE t ADD g ;\n";
  // Arguments, exit status, output and errors, in this order.
  const std::tuple<std::vector<std::string>, int, std::string, std::string> kRows[] = {
      {{"show", current, "t"}, 0, "COLUMN TYPE\na      integer\n", ""},
      {{"show", none, "t"}, 1, "", "devcfg: cannot read " + none + "\n"},
      {{"upgrade", current, "t", wanted, "--dry-run"}, 0, plan, ""},
      {{"diff", current, "t", wanted}, 1, missing, ""},
      {{"upgrade", current, "t", wanted}, 0, plan, ""},
      {{"diff", current, "t", wanted, "--json"}, 0, "[\n]\n", ""},
      {{"upgrade", clash, "t", wanted},
       1,
       "",
       "devcfg: a column could not be added (--log tells why); added before it: 3\n"}};
  for (auto [arguments, exit_status, output, errors] : kRows) {
    arguments.insert(arguments.begin(), "schema");
    const test::Outcome outcome = test::run(ORVANEIP_DEVCFG, arguments);
    EXPECT_EQ(outcome.exit_status, exit_status);
    EXPECT_EQ(outcome.output, output);
    EXPECT_EQ(outcome.errors, errors);
  }
  EXPECT_THROW(test::read_file(none), std::runtime_error);
}
