#include <gtest/gtest.h>

#include "tests/support/bare_sqlite.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace {

class SchemaCommand : public testing::Test {
 protected:
  SchemaCommand() {
    EXPECT_EQ(test::BareSqlite(current_).exec("CREATE TABLE t(a integer)"), 0);
    EXPECT_EQ(test::BareSqlite(wanted_).exec(
                  "CREATE TABLE t(a integer, b TEXT UNIQUE NOT NULL DEFAULT 'x',"
                  "\"c d\" DECIMAL(10, 2), e BIG INT REFERENCES q, f AS (1), g PRIMARY KEY)"),
              0);
  }

  static test::Outcome schema(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "schema");
    return test::run(ORVANEIP_DEVCFG, arguments);
  }

  test::TempFolder folder_;
  std::string current_ = folder_.file("current.db");
  std::string wanted_ = folder_.file("wanted.db");
};

}  // namespace

TEST_F(SchemaCommand, ShowsWhatIsMissingAndAddsIt) {
  const test::Outcome shown = schema({"show", current_, "t"});
  EXPECT_EQ(shown.output, "COLUMN TYPE\na      integer\n");
  const test::Outcome missing = schema({"diff", current_, "t", wanted_});
  EXPECT_EQ(missing.exit_status, 1);
  EXPECT_EQ(missing.errors, "");
  EXPECT_EQ(missing.output,
            "MISSING COLUMN TYPE          CANNOT BE ADDED\n"
            "b              TEXT          NOT NULL, DEFAULT 'x', UNIQUE\n"
            "c d            DECIMAL(10,2) \n"
            "e              BIG           type BIG INT, REFERENCES q\n"
            "f                            GENERATED\n"
            "g                            PRIMARY KEY\n");
  const test::Outcome planned = schema({"upgrade", current_, "t", wanted_, "--dry-run"});
  EXPECT_EQ(planned.output,
            "ALTER TABLE t ADD b TEXT;\nALTER TABLE t ADD \"c d\" DECIMAL(10,2);\n"
            "ALTER TABLE t ADD e BIG;\nALTER TABLE t ADD f ;\nALTER TABLE t ADD g ;\n");
  EXPECT_EQ(schema({"diff", current_, "t", wanted_}).output, missing.output);
  const test::Outcome done = schema({"upgrade", current_, "t", wanted_});
  EXPECT_EQ(done.exit_status, 0);
  EXPECT_EQ(done.output, planned.output);
  const test::Outcome none = schema({"diff", current_, "t", wanted_, "--json"});
  EXPECT_EQ(none.exit_status, 0);
  EXPECT_EQ(none.output, "[\n]\n");
}

TEST_F(SchemaCommand, TellsWhyItFailed) {
  const std::string missing = folder_.file("missing.db");
  EXPECT_EQ(schema({"show", missing, "t"}).errors, "devcfg: cannot read " + missing + "\n");
  EXPECT_EQ(schema({"show", current_, "T"}).exit_status, 1);
  EXPECT_EQ(schema({"diff", current_, "t"}).exit_status, 2);
  EXPECT_THROW(test::read_file(missing), std::runtime_error);
  ASSERT_EQ(test::BareSqlite(current_).exec("ALTER TABLE t ADD F"), 0);
  const test::Outcome failed = schema({"upgrade", current_, "t", wanted_});
  EXPECT_EQ(failed.exit_status, 1);
  EXPECT_EQ(failed.errors,
            "devcfg: a column could not be added (--log tells why); added before it: 3\n");
}
