#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/bare_sqlite.h"
#include "tests/support/captured_log.h"
#include "tests/support/columns.h"
#include "tests/support/temp_folder.h"

namespace {

using test::make_columns;
using test::Texts;

class UpdateTable : public testing::Test {
 protected:
  UpdateTable() { EXPECT_EQ(bare_.exec("CREATE TABLE t(a INT)"), 0); }

  int update(const Texts& texts, std::string table) {
    return devcfg_update_table(make_columns(texts).get(), table.data(), path_.data());
  }
  std::string statement() const {
    return *bare_.query("SELECT sql FROM sqlite_master WHERE name='t'")->at(0, 0);
  }

  test::TempFolder folder_;
  std::string path_ = folder_.file("a.db");
  test::BareSqlite bare_{path_};
};

std::vector<std::string> lines(const char* function, const std::string& text) {
  return {std::string("[") + function + "] " + text};
}

}  // namespace

// The library asks this program to sleep.
extern "C" __attribute__((visibility("default"))) int usleep(useconds_t) { return 0; }

TEST_F(UpdateTable, PlainWordsStandInTheStatementAsTheyAre) {
  EXPECT_EQ(update({}, "t"), 0);
  EXPECT_EQ(update({{"b", "TEXT"}, {"C_2$", "VARCHAR(20)"}, {"\xC3\xA4", ""}}, "t"), 0);
  EXPECT_EQ(update({{"order", "DECIMAL(10,2)"}, {"x INT, y", "INT); --"}, {"z", "INT("}}, "t"), 0);
  EXPECT_EQ(statement(),
            "CREATE TABLE t(a INT, b TEXT, C_2$ VARCHAR(20), \xC3\xA4, \"order\" DECIMAL(10,2), "
            "\"x INT, y\" \"INT); --\", z \"INT(\")");
}

TEST_F(UpdateTable, AFailureKeepsWhatWasAddedBefore) {
  test::take_log();
  EXPECT_EQ(update({{"b", "INT"}, {"A", "INT"}, {"c", "INT"}}, "t"), -1);
  EXPECT_EQ(statement(), "CREATE TABLE t(a INT, b INT)");
  EXPECT_EQ(test::take_log(),
            (std::vector<std::string>{"[CSqlite] ExecSQL error: duplicate column name: A\n",
                                      "[devcfg_update_table] QuerySQL Error"}));
  EXPECT_EQ(update({{"b", "INT"}}, "missing"), -1);
  EXPECT_EQ(update({{"c", "INT"}}, "t ADD d; DROP TABLE t; --"), -1);
  EXPECT_EQ(statement(), "CREATE TABLE t(a INT, b INT)");
}

TEST_F(UpdateTable, RefusesAListBeforeItsFirstChange) {
  const char* kFunction = "devcfg_upgrade_statements";
  const std::string kNoEnd = ": the name or the type word is missing or has no end";
  const std::string fitting(1024 - sizeof("ALTER TABLE  ADD long INT"), 'x');
  struct Row {
    Texts columns;
    std::string table;
    std::string line;
  };
  const Row kRows[] = {
      {Texts(129, {"b", "INT"}), "t", "More than 128 new columns"},
      {{{"b", "INT"}, {std::string(128, 'n'), ""}},
       "t",
       "Column " + std::string(127, 'n') + kNoEnd},
      {{{"b", "INT"}, {"c", std::string(128, 't')}}, "t", "Column c" + kNoEnd},
      {{{"b", "INT"}, {"long", "INT"}},
       fitting + "x",
       "Column long: the statement that adds it is too long"},
  };
  for (const Row& row : kRows) {
    test::take_log();
    EXPECT_EQ(update(row.columns, row.table), -1);
    EXPECT_EQ(test::take_log(), lines(kFunction, row.line));
  }
  EXPECT_EQ(statement(), "CREATE TABLE t(a INT)");
  std::vector<std::string> statements = {"kept"};
  EXPECT_EQ(
      devcfg_upgrade_statements(make_columns({{"long", "INT"}}).get(), fitting.c_str(), statements),
      0);
  EXPECT_EQ(statements.size(), 2U);
  EXPECT_EQ(statements.back().size(), 1023U);
  EXPECT_EQ(devcfg_update_table(nullptr, path_.data(), path_.data()), -1);
  EXPECT_EQ(devcfg_update_table(make_columns({}).get(), nullptr, path_.data()), -1);
}

TEST_F(UpdateTable, TellsThatTheFileCannotBeOpenedOrStaysLocked) {
  std::string folder = folder_.path();
  std::string table = "t";
  test::take_log();
  EXPECT_EQ(devcfg_update_table(make_columns({}).get(), table.data(), folder.data()), -1);
  EXPECT_EQ(test::take_product_log(),
            lines("devcfg_update_table", "Open database Error, " + folder + "."));
  ASSERT_EQ(bare_.exec("BEGIN EXCLUSIVE"), 0);
  EXPECT_EQ(update({{"b", "INT"}}, "t"), -1);
  EXPECT_EQ(test::take_product_log(), lines("devcfg_update_table", "QuerySQL Error"));
  EXPECT_EQ(test::load(path_, "t"), nullptr);
  EXPECT_EQ(test::take_product_log(), lines("devcfg_load_table_schema", "QuerySQL Error"));
}
