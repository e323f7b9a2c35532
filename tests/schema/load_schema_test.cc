#include <gtest/gtest.h>

#include <array>
#include <random>

#include "tests/support/bare_sqlite.h"
#include "tests/support/captured_log.h"
#include "tests/support/columns.h"
#include "tests/support/temp_folder.h"

namespace {

using test::BareSqlite;
using test::load;
using test::Texts;

std::string in_marks(const std::string& text, char mark) {
  std::string result(1, mark);
  for (const char byte : text) {
    result.append(byte == mark ? 2 : 1, byte);
  }
  return result += mark;
}

// clang-format off
// Declared types, as SQL, and their first words.
constexpr std::pair<const char*, const char*> kTypes[] = {
    {"TEXT", "TEXT"}, {"VARCHAR(20)", "VARCHAR(20)"}, {"VarChar (20)", "VarChar"}, {"", ""},
    {"DECIMAL(\n10 /*,)*/ , -2)", "DECIMAL(10,-2)"}, {"UNSIGNED BIG INT", "UNSIGNED"},
    {"Float/* c */big", "Float"}, {"long -- , c TEXT)\n varchar", "long"}, {"\"\"", ""},
    {"\"a type\"", "a"}, {"[x;DROP]", "x;DROP"}, {"'UNIQUE'", "UNIQUE"}, {"\"t)--\"", "t)--"},
    {"`NOT`", "NOT"}, {"\"--x\"", "--x"}, {"'a\"'(2)", "a\"(2)"},
    {"int", "int"}, {"Int big", "Int"}, {"INT(4)", "INT(4)"}};
constexpr const char* kConstraints[] = {
    "", "", "", " NOT NULL", " DEFAULT 'c0 INT, b INT'", " DEFAULT (1 + (2))",
    " CHECK (1 IN (1, 2))", " UNIQUE", " COLLATE NOCASE", " REFERENCES canary(a)", " AS (1) STORED", " AS ('x, y')",
    "/* , z TEXT */", " -- it's, \"one\"\n", " CONSTRAINT \"c, d\" NOT NULL"};
constexpr const char* kNames[] = {
    "plain", "Plain_2$", "\xC3\xA4", "two words", "a,b", "(", ")", "it's", "say \"x\"", "[x]", "tab\tx",
    "line\nx", "select", "column", "constraint", "primary", "x; DROP TABLE canary; --", "/*", "--",
    "%s%n", "1st", "", " ", "x INTEGER, y", "\\", "`"};
constexpr const char* kTableConstraints[] = {
    "", "", ", UNIQUE (canary_key, [c0])", ", CONSTRAINT x PRIMARY KEY (canary_key)",
    ", CHECK (1 IN (1, 2)), FOREIGN KEY(c0) REFERENCES canary(a)", ", -- end\n UNIQUE(c0)"};
// clang-format on

std::mt19937 generator(20260801);

template <typename Item, std::size_t count>
const Item& pick(const Item (&items)[count]) {
  return items[generator() % count];
}

// A statement whose columns are appended to `columns`.
std::string make_statement(const std::string& table, Texts& columns) {
  std::string sql = "CREATE TABLE " + in_marks(table, pick({'"', '`'})) + "(canary_key";
  columns.emplace_back("canary_key", "");
  const unsigned count = 2 + generator() % 8;
  for (unsigned i = 0; i < count; ++i) {
    const std::string name = i == 0 ? "c0" : pick(kNames) + std::to_string(i);
    const auto& [type, word] = pick(kTypes);
    columns.emplace_back(name, word);
    sql += pick({", ", ",\n\t"}) + in_marks(name, pick({'"', '`'})) + pick({" ", "\t\n "}) + type;
    sql += i == 0 ? "" : pick(kConstraints);
  }
  return sql + pick(kTableConstraints) + pick({")", ") -- after"});
}

}  // namespace

// The thousands of changes below need not survive a power cut.
extern "C" __attribute__((visibility("default"))) int fdatasync(int) { return 0; }
extern "C" __attribute__((visibility("default"))) int fsync(int) { return 0; }

TEST(LoadSchema, PlainStatementsAsWritten) {
  const std::pair<const char*, Texts> kRows[] = {
      {"CREATE TABLE [t] ([a b] INTEGER,\"b\" TEXT DEFAULT 'x')",
       {{"a b", "INTEGER"}, {"b", "TEXT"}}},
      {"CREATE TABLE t(a integer PRIMARY KEY, b Text)", {{"a", "integer"}, {"b", "Text"}}},
      {"CREATE TABLE t(a VARCHAR(20), ab real NOT NULL)", {{"a", "VARCHAR(20)"}, {"ab", "real"}}},
      {"CREATE TABLE t(a INT(4), b int, x TEXT DEFAULT 'c int', c INT)",
       {{"a", "INT(4)"}, {"b", "int"}, {"x", "TEXT"}, {"c", "INT"}}},
      {"CREATE TABLE t AS SELECT 1 AS a", {{"a", ""}}},
      {"CREATE VIRTUAL TABLE t USING fts5(a, b)", {{"a", ""}, {"b", ""}}},
  };
  for (const auto& [statement, columns] : kRows) {
    const test::TempFolder folder;
    const std::string path = folder.file("a.db");
    ASSERT_EQ(BareSqlite(path).exec(statement), 0) << statement;
    EXPECT_EQ(test::texts_of(*load(path, "t")), columns) << statement;
  }
}

// What SQLite accepts is read as SQLite reads it; added to another table it is there unchanged, and
// nothing of it runs.
TEST(LoadSchema, GeneratedTablesAreReadAndAddedWhole) {
  const test::TempFolder folder;
  const std::string wanted_path = folder.file("wanted.db");
  std::string path = folder.file("current.db");
  const BareSqlite wanted(wanted_path);
  const BareSqlite current(path);
  ASSERT_EQ(wanted.exec("CREATE TABLE canary(a INTEGER PRIMARY KEY, b UNIQUE)"), 0);
  ASSERT_EQ(current.exec("CREATE TABLE canary(a)"), 0);
  for (int round = 0; round < 2000; ++round) {
    std::string table = pick(kNames);
    const std::string quoted = in_marks(table, '"');
    Texts expected;
    const std::string statement = make_statement(table, expected);
    ASSERT_EQ(wanted.exec(statement), 0) << statement;
    const test::Columns columns = load(wanted_path, table);
    ASSERT_NE(columns, nullptr) << statement;
    EXPECT_EQ(test::texts_of(*columns), expected) << statement;

    ASSERT_EQ(current.exec("CREATE TABLE " + quoted + "(old)"), 0);
    ASSERT_EQ(devcfg_update_table(columns.get(), table.data(), path.data()), 0) << statement;
    expected.insert(expected.begin(), {"old", ""});
    EXPECT_EQ(test::texts_of(*load(path, table)), expected) << statement;
    EXPECT_EQ(current.query("SELECT count(*) FROM sqlite_master WHERE type='table'")->at(0, 0),
              "2");
    ASSERT_EQ(wanted.exec("DROP TABLE " + quoted) | current.exec("DROP TABLE " + quoted), 0);
    test::take_log();
  }
}

TEST(LoadSchema, TellsWhyThereIsNoList) {
  const test::TempFolder folder;
  std::string path = folder.file("a.db");
  const std::string text = folder.file("text");
  test::write_file(text, std::string(4096, 'x'));
  const std::string n(127, 'n');
  const std::string t(127, 't');
  ASSERT_EQ(BareSqlite(path).exec("CREATE TABLE t(a); CREATE VIEW v AS SELECT 1; CREATE TABLE n(n" +
                                  n + "); CREATE TABLE w(a t" + t + "); CREATE TABLE fits(" + n +
                                  " " + t + ")"),
            0);
  const std::string none = "No target table in db: " + path;
  const std::string too_long = " is longer than 127 bytes";
  // File, table and message.
  const std::array<std::string, 3> kRows[] = {
      {"", "t", "Open database Error, ."},
      {folder.path(), "t", "Open database Error, " + folder.path() + "."},
      {text, "t", "QuerySQL Error"},
      {path, "T", none},
      {path, "v", none},
      {path, "x' OR '1'='1", none},
      {path, "n", "Column " + n + ": the name or the type word " + too_long},
      {path, "w", "Column a: the name or the type word " + t + too_long},
  };
  for (const auto& [file, table, line] : kRows) {
    test::take_log();
    EXPECT_EQ(load(file, table), nullptr) << table;
    EXPECT_EQ(test::take_product_log(),
              std::vector<std::string>{"[devcfg_load_table_schema] " + line});
  }
  EXPECT_EQ(load(path, "fits")->col_count, 1);
  EXPECT_EQ(devcfg_load_table_schema(nullptr, nullptr), nullptr);
  EXPECT_EQ(devcfg_load_table_schema(path.data(), nullptr), nullptr);
}
