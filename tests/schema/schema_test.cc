#include <unistd.h>

#include <array>

#include "tests/support/bare_sqlite.h"
#include "tests/support/columns.h"
#include "tests/support/library.h"

namespace {

using test::make_columns;
using test::Texts;
using Lines = std::vector<std::string>;

// Returns `count` columns, up to 900, whose names and types have the longest length.
Texts long_texts(int count) {
  Texts texts;
  for (int i = 100; i < 100 + count; ++i) {
    texts.emplace_back(std::string(124, 'n') + std::to_string(i), std::string(127, 't'));
  }
  return texts;
}

// clang-format off
// Declared types, as SQL with the constraints after them, and their first words.
constexpr std::pair<const char*, const char*> kTypes[] = {
    {"TEXT NOT NULL", "TEXT"}, {"VARCHAR(20) DEFAULT 'a, b INT'", "VARCHAR(20)"},
    {"AS ('x, y')", ""}, {"VarChar (20) UNIQUE", "VarChar"}, {"`NOT` AS (1) STORED", "NOT"},
    {"DECIMAL(\n10 /*,)*/ , -2) DEFAULT (2)", "DECIMAL(10,-2)"}, {"\"t)--\"", "t)--"},
    {"UNSIGNED BIG INT CHECK (1 IN (1, 2))", "UNSIGNED"}, {"long -- , c TEXT)\n varchar", "long"},
    {"Float/* c */big REFERENCES q(a)", "Float"}, {"\"\" CONSTRAINT \"c, d\" NOT NULL", ""},
    {"\"a type\" COLLATE NOCASE", "a"}, {"[x;DROP]/* , z TEXT */", "x;DROP"},
    {"'UNIQUE' -- it's, \"one\"\n", "UNIQUE"}, {"\"--x\"", "--x"}, {"'a\"'(2)", "a\"(2)"},
    {"int DEFAULT 'c0 INT, b INT'", "int"}, {"Int big", "Int"}, {"INT(4)", "INT(4)"}};
// clang-format on

struct UpdateTable : testing::Test {
  UpdateTable() {
    bare_.exec("CREATE TABLE t(a INT)");
    test::take_log();
  }

  int update(const Texts& texts, std::string table = "t") {
    return devcfg_update_table(make_columns(texts).get(), table.data(), path_.data());
  }
  std::string statement() const {
    return *bare_.query("SELECT sql FROM sqlite_master WHERE name='t'")->at(0, 0);
  }

  test::TempDirectory directory_;
  std::string path_ = directory_.file("a.db");
  test::BareSqlite bare_{path_};
};

}  // namespace

// Replaces the system's function for the library.
extern "C" __attribute__((visibility("default"))) int usleep(useconds_t) { return 0; }

TEST(ColumnLists, AreComparedByNameAloneAndRefusedWhenTheyDoNotFit) {
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
  test::take_log();
  for (const auto& [current, wanted, found, error] : kRows) {
    const test::Columns columns(devcfg_compare_table_schema(make_columns(current).get(),
                                                            make_columns(wanted).get(), &count));
    EXPECT_EQ(test::texts_of(*columns), found);
    EXPECT_EQ(count, error.empty() ? static_cast<int>(found.size()) : -1);
    EXPECT_EQ(test::take_product_log(),
              Lines(!error.empty(), "[devcfg_compare_table_schema] " + error));
  }
  const test::Columns none(devcfg_compare_table_schema(nullptr, nullptr, &count));
  EXPECT_TRUE(none->col_count == 0 && count == -1);
  devcfg_init_tb_info(nullptr, 3);
  devcfg_del_tb_info(nullptr);
}

TEST_F(UpdateTable, QuotesWhatIsNotAPlainWordAndKeepsWhatWasAddedBeforeAFailure) {
  Texts columns = {{"C_2$", "VARCHAR(20)"}, {"\xC3\xA4", ""}, {"order", "INT"}, {"d", "D(10,2)"}};
  std::string expected =
      "CREATE TABLE t(a INT, C_2$ VARCHAR(20), \xC3\xA4, \"order\" INT, d D(10,2)";
  for (const char* type : {"I)--", "I()", "I(,2)", "I(1,)", "I(1,x)", "I(1x)", "I(23", "I|"}) {
    columns.emplace_back("x, " + std::to_string(columns.size()), type);
    expected += ", \"" + columns.back().first + "\" \"" + type + '"';
  }
  columns.insert(columns.end(), {{"A", "INT"}, {"c", "INT"}});
  EXPECT_EQ(update(columns), -1);
  EXPECT_EQ(test::take_log(), (Lines{"[CSqlite] ExecSQL error: duplicate column name: A\n",
                                     "[devcfg_update_table] QuerySQL Error"}));
  EXPECT_EQ(update({{"c", "INT"}}, "t ADD d; DROP TABLE t; --"), -1);
  EXPECT_EQ(statement(), expected + ")");
}

TEST_F(UpdateTable, RefusesAListBeforeTheFirstChange) {
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
  const test::Columns columns = make_columns({{"long", "INT"}});
  Lines statements;
  EXPECT_EQ(devcfg_upgrade_statements(columns.get(), fitting.c_str(), statements), 0);
  EXPECT_EQ(statements.at(0).size(), 1023U);
  char *none[] = {nullptr}, **texts[] = {nullptr, none};
  for (char** names : texts) {
    const table_info broken = {1, names, columns->col_type};
    EXPECT_EQ(devcfg_upgrade_statements(&broken, "t", statements), -1);
  }
}

TEST_F(UpdateTable, FailsWhenTheFileStaysLocked) {
  bare_.exec("BEGIN EXCLUSIVE");
  EXPECT_TRUE(update({{"b", "INT"}}) == -1 && test::load(path_, "t") == nullptr);
  EXPECT_EQ(test::take_product_log(), (Lines{"[devcfg_update_table] QuerySQL Error",
                                             "[devcfg_load_table_schema] QuerySQL Error"}));
}

// Reads every type as SQLite reads it, and adds it to another table unchanged.
TEST(LoadSchema, ReadsTypeWordsThatAreAddedUnchanged) {
  const test::TempDirectory directory;
  std::string path = directory.file("a.db"), wanted = "wanted", current = "current";
  std::string statement = "CREATE TABLE current(c); CREATE TABLE wanted(c";
  Texts expected = {{"c", ""}};
  for (const auto& [type, word] : kTypes) {
    expected.emplace_back(std::string("c") + std::to_string(expected.size()), word);
    statement += ",\n\t" + expected.back().first + " " + type;
  }
  ASSERT_EQ(test::BareSqlite(path).exec(statement + ", UNIQUE (c1, [c2]), -- )\n CHECK (1))"), 0);
  const test::Columns columns = test::load(path, wanted);
  EXPECT_EQ(test::texts_of(*columns), expected);
  const test::Columns fresh(
      devcfg_compare_table_schema(test::load(path, current).get(), columns.get(), nullptr));
  EXPECT_EQ(devcfg_update_table(fresh.get(), current.data(), path.data()), 0);
  EXPECT_EQ(test::texts_of(*test::load(path, current)), expected);
}

TEST(LoadSchema, LogsWhyThereIsNoList) {
  const test::TempDirectory directory;
  const std::string path = directory.file("a.db"), text = directory.file("text");
  test::write_file(text, std::string(4096, 'x'));
  const std::string n(127, 'n'), t(127, 't');
  test::BareSqlite(path).exec("CREATE TABLE n(n" + n + "); CREATE TABLE w(a t" + t +
                              "); CREATE TABLE fits(" + n + " " + t +
                              "); CREATE VIEW v AS SELECT 1;"
                              "CREATE TABLE copy AS SELECT 1 AS a;"
                              "CREATE VIRTUAL TABLE boxes USING rtree(id, low, high, +name);"
                              "CREATE VIRTUAL TABLE pages USING dbstat");
  const std::string none = "No target table in db: " + path, too_long = " is longer than 127 bytes";
  // File, table and message.
  const std::array<std::string, 3> kRows[] = {
      {"", "t", "Open database Error, ."},
      {directory.path(), "t", "Open database Error, " + directory.path() + "."},
      {text, "t", "QuerySQL Error"},
      {path, "Fits", none},
      {path, "v", none},
      {path, "x' OR '1'='1", none},
      {path, "n", "Column " + n + ": the name or the type word " + too_long},
      {path, "w", "Column a: the name or the type word " + t + too_long},
  };
  for (const auto& [file, table, line] : kRows) {
    test::take_log();
    EXPECT_EQ(test::load(file, table), nullptr) << table;
    EXPECT_EQ(test::take_product_log(), Lines{"[devcfg_load_table_schema] " + line});
  }
  EXPECT_EQ(test::texts_of(*test::load(path, "fits")), (Texts{{n, t}}));
  EXPECT_EQ(test::texts_of(*test::load(path, "copy")), (Texts{{"a", ""}}));
  EXPECT_EQ(test::texts_of(*test::load(path, "pages")).at(2),
            Texts::value_type("pageno", "INTEGER"));
  EXPECT_EQ(test::texts_of(*test::load(path, "boxes")),
            (Texts{{"id", "INT"}, {"low", "REAL"}, {"high", "REAL"}, {"name", ""}}));
}
