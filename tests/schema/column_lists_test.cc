#include <unistd.h>

#include "tests/support/bare_sqlite.h"
#include "tests/support/columns.h"
#include "tests/support/library.h"

namespace {

using test::make_columns;
using test::Texts;
using Lines = std::vector<std::string>;

// `count` columns, up to 900, with texts of the longest length.
Texts long_texts(int count) {
  Texts texts;
  for (int i = 0; i < count; ++i) {
    texts.emplace_back(std::string(124, 'n') + std::to_string(100 + i), std::string(127, 't'));
  }
  return texts;
}

class UpdateTable : public testing::Test {
 protected:
  UpdateTable() {
    EXPECT_EQ(bare_.exec("CREATE TABLE t(a INT)"), 0);
    test::take_log();
  }

  int update(const Texts& texts, std::string table = "t") {
    return devcfg_update_table(make_columns(texts).get(), table.data(), path_.data());
  }
  std::string statement() const {
    return *bare_.query("SELECT sql FROM sqlite_master WHERE name='t'")->at(0, 0);
  }

  test::TempFolder folder_;
  std::string path_ = folder_.file("a.db");
  test::BareSqlite bare_{path_};
};

}  // namespace

// The library asks this program to sleep.
extern "C" __attribute__((visibility("default"))) int usleep(useconds_t) { return 0; }

TEST(ColumnLists, HaveRoomForEveryColumn) {
  EXPECT_EQ(test::texts_of(*make_columns(long_texts(500))), long_texts(500));
  const test::Columns columns(static_cast<table_info*>(std::calloc(1, sizeof(table_info))));
  devcfg_init_tb_info(columns.get(), -3);
  EXPECT_EQ(columns->col_count, 0);
  devcfg_init_tb_info(nullptr, 3);
  devcfg_del_tb_info(nullptr);
}

TEST(ColumnLists, CompareByNameAloneOrRefuseWhatWouldNotFit) {
  const std::string kInvalid = "A column list is missing or not valid";
  // The current and the wanted columns, the result and the message.
  const std::tuple<Texts, Texts, Texts, std::string> kRows[] = {
      {{}, {{"c", "INT"}, {"a", ""}}, {{"c", "INT"}, {"a", ""}}, ""},
      {{{"a", "INT"}}, {{"A", "INT"}, {"a", "TEXT"}}, {{"A", "INT"}}, ""},
      {{{"b", "X"}, {"old", ""}}, {{"a", ""}, {"b", ""}, {"c", ""}}, {{"a", ""}, {"c", ""}}, ""},
      {{}, long_texts(128), long_texts(128), ""},
      {{}, long_texts(129), {}, "More than 128 new columns"},
      {{{std::string(128, 'n'), "INT"}}, {}, {}, kInvalid},
      {{}, {{"a", std::string(128, 't')}}, {}, kInvalid},
  };
  int count = 77;
  const auto compare = [&](const test::Columns& current, const test::Columns& wanted) {
    const test::Columns found(devcfg_compare_table_schema(current.get(), wanted.get(), &count));
    return test::texts_of(*found);
  };
  test::take_log();
  for (const auto& [current, wanted, found, error] : kRows) {
    EXPECT_EQ(compare(make_columns(current), make_columns(wanted)), found);
    EXPECT_EQ(count, error.empty() ? static_cast<int>(found.size()) : -1);
    EXPECT_EQ(test::take_product_log(),
              Lines(!error.empty(), "[devcfg_compare_table_schema] " + error));
  }
  const test::Columns columns = make_columns({{"a", "INT"}});
  EXPECT_TRUE(compare(columns, nullptr).empty() && compare(nullptr, columns).empty());
  EXPECT_EQ(count, -1);
}

TEST_F(UpdateTable, PlainWordsStandInTheStatementAsTheyAre) {
  Texts columns = {{"C_2$", "VARCHAR(20)"}, {"\xC3\xA4", ""}, {"order", "INT"}, {"d", "D(10,2)"}};
  std::string expected =
      "CREATE TABLE t(a INT, C_2$ VARCHAR(20), \xC3\xA4, \"order\" INT, d D(10,2)";
  for (const char* type :
       {"I)--", "I()", "I(,2)", "I(1,)", "I(1,x)", "I(1x)", "I(2", "I(3)x", "I|"}) {
    columns.emplace_back("x, " + std::to_string(columns.size()), type);
    expected += ", \"" + columns.back().first + "\" \"" + type + '"';
  }
  EXPECT_EQ(update(columns), 0);
  EXPECT_EQ(statement(), expected + ")");
}

TEST_F(UpdateTable, AFailureKeepsWhatWasAddedBefore) {
  EXPECT_EQ(update({{"b", "INT"}, {"A", "INT"}, {"c", "INT"}}), -1);
  EXPECT_EQ(test::take_log(), (Lines{"[CSqlite] ExecSQL error: duplicate column name: A\n",
                                     "[devcfg_update_table] QuerySQL Error"}));
  EXPECT_EQ(update({{"c", "INT"}}, "t ADD d; DROP TABLE t; --"), -1);
  EXPECT_EQ(statement(), "CREATE TABLE t(a INT, b INT)");
}

TEST_F(UpdateTable, RefusesAListBeforeItsFirstChange) {
  const std::string kNoEnd = ": the name or the type word is missing or has no end";
  const std::string fitting(1024 - sizeof("ALTER TABLE  ADD long INT"), 'x');
  // Columns, table and message.
  const std::tuple<Texts, std::string, std::string> kRows[] = {
      {Texts(129, {"b", "INT"}), "t", "More than 128 new columns"},
      {{{"b", ""}, {std::string(128, 'n'), ""}}, "t", "Column " + std::string(127, 'n') + kNoEnd},
      {{{"b", ""}, {"c", std::string(128, 't')}}, "t", "Column c" + kNoEnd},
      {{{"long", "INT"}}, fitting + "x", "Column long: the statement that adds it is too long"},
  };
  for (const auto& [texts, table, line] : kRows) {
    EXPECT_EQ(update(texts, table), -1);
    EXPECT_EQ(test::take_log(), Lines{"[devcfg_upgrade_statements] " + line});
  }
  EXPECT_EQ(statement(), "CREATE TABLE t(a INT)");
  Lines statements = {"kept"};
  const test::Columns columns = make_columns({{"long", "INT"}});
  EXPECT_EQ(devcfg_upgrade_statements(columns.get(), fitting.c_str(), statements), 0);
  EXPECT_EQ(statements.at(1).size(), 1023U);
  char* no_text[] = {nullptr};
  for (table_info broken : {table_info{1, nullptr, nullptr},
                            {1, columns->col_name, nullptr},
                            {1, no_text, columns->col_type}}) {
    EXPECT_EQ(devcfg_upgrade_statements(&broken, "t", statements), -1);
  }
  EXPECT_EQ(devcfg_update_table(nullptr, path_.data(), path_.data()), -1);
  EXPECT_EQ(devcfg_update_table(columns.get(), nullptr, path_.data()), -1);
}

TEST_F(UpdateTable, TellsThatTheFileStaysLocked) {
  ASSERT_EQ(bare_.exec("BEGIN EXCLUSIVE"), 0);
  EXPECT_EQ(update({{"b", "INT"}}), -1);
  EXPECT_EQ(test::load(path_, "t"), nullptr);
  EXPECT_EQ(test::take_product_log(), (Lines{"[devcfg_update_table] QuerySQL Error",
                                             "[devcfg_load_table_schema] QuerySQL Error"}));
}
