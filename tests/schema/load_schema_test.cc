#include <array>

#include "tests/support/bare_sqlite.h"
#include "tests/support/columns.h"
#include "tests/support/library.h"

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
// Declared types, as SQL, with constraints behind them, and their first words.
constexpr std::pair<const char*, const char*> kTypes[] = {
    {"TEXT NOT NULL", "TEXT"}, {"VARCHAR(20) DEFAULT 'a, b INT'", "VARCHAR(20)"},
    {"AS ('x, y')", ""}, {"VarChar (20) UNIQUE", "VarChar"}, {"`NOT` AS (1) STORED", "NOT"},
    {"DECIMAL(\n10 /*,)*/ , -2) DEFAULT (2)", "DECIMAL(10,-2)"}, {"\"t)--\"", "t)--"},
    {"UNSIGNED BIG INT CHECK (1 IN (1, 2))", "UNSIGNED"}, {"long -- , c TEXT)\n varchar", "long"},
    {"Float/* c */big REFERENCES q(a)", "Float"}, {"\"\" CONSTRAINT \"c, d\" NOT NULL", ""},
    {"\"a type\" COLLATE NOCASE", "a"}, {"[x;DROP]/* , z TEXT */", "x;DROP"},
    {"'UNIQUE' -- it's, \"one\"\n", "UNIQUE"}, {"\"--x\"", "--x"}, {"'a\"'(2)", "a\"(2)"},
    {"int DEFAULT 'c0 INT, b INT'", "int"}, {"Int big", "Int"}, {"INT(4)", "INT(4)"}};
constexpr const char* kNames[] = {
    "plain", "Plain_2$", "\xC3\xA4", "two words", "a,b", "(", ")", "it's", "say \"x\"", "[x]", "`",
    "tab\tx", "line\nx", "select", "x; DROP TABLE canary; --", "/*", "--", "%s%n", "1st", "", " "};
constexpr const char* kTableConstraints[] = {
    "", ", UNIQUE (canary_key, [c0])", ", CONSTRAINT x PRIMARY KEY (canary_key) -- after\n",
    ", CHECK (1 IN (1, 2)), FOREIGN KEY(c0) REFERENCES canary(a)", ", -- end\n UNIQUE(c0)"};
// clang-format on

}  // namespace

// Every name with every type is read as SQLite reads it; added to another table it is there
// unchanged, and nothing of it runs.
TEST(LoadSchema, AnyNamesAndTypesAreReadAndAddedWhole) {
  const test::TempFolder folder;
  const std::string wanted_path = folder.file("wanted.db");
  std::string path = folder.file("current.db");
  const BareSqlite wanted(wanted_path), current(path);
  ASSERT_EQ(wanted.exec("CREATE TABLE canary(a INTEGER PRIMARY KEY)"), 0);
  ASSERT_EQ(current.exec("CREATE TABLE canary(a)"), 0);
  for (std::size_t round = 0; round < std::size(kNames); ++round) {
    std::string table = kNames[round];
    std::string statement = "CREATE TABLE " + in_marks(table, '`') + "(canary_key, c0";
    Texts expected = {{"canary_key", ""}, {"c0", ""}};
    for (const auto& [type, word] : kTypes) {
      expected.emplace_back(table + std::to_string(expected.size()), word);
      statement += ",\n\t" + in_marks(expected.back().first, '"') + " " + type;
    }
    statement += kTableConstraints[round % std::size(kTableConstraints)] + std::string(")");
    ASSERT_EQ(wanted.exec(statement), 0) << statement;
    const test::Columns columns = load(wanted_path, table);
    ASSERT_TRUE(columns) << statement;
    EXPECT_EQ(test::texts_of(*columns), expected) << statement;

    ASSERT_EQ(current.exec("CREATE TABLE " + in_marks(table, '"') + "(old)"), 0);
    ASSERT_EQ(devcfg_update_table(columns.get(), table.data(), path.data()), 0) << statement;
    expected.insert(expected.begin(), {"old", ""});
    EXPECT_EQ(test::texts_of(*load(path, table)), expected) << statement;
    EXPECT_EQ(*current.query("SELECT count(*) FROM sqlite_master WHERE type='table'")->at(0, 0),
              std::to_string(round + 2));
  }
}

TEST(LoadSchema, TellsWhyThereIsNoList) {
  const test::TempFolder folder;
  std::string path = folder.file("a.db");
  const std::string text = folder.file("text");
  test::write_file(text, std::string(4096, 'x'));
  const std::string n(127, 'n'), t(127, 't');
  ASSERT_EQ(
      BareSqlite(path).exec("CREATE TABLE t(a INT); CREATE TABLE n(n" + n +
                            "); CREATE TABLE w(a t" + t + "); CREATE TABLE fits(" + n + " " + t +
                            "); CREATE VIEW v AS SELECT 1; CREATE TABLE copy AS SELECT "
                            "1 AS a; CREATE VIRTUAL TABLE boxes USING rtree(id, low, high, +name)"),
      0);
  const std::string none = "No target table in db: " + path, too_long = " is longer than 127 bytes";
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
  EXPECT_EQ(test::texts_of(*load(path, "fits")), (Texts{{n, t}}));
  EXPECT_EQ(test::texts_of(*load(path, "copy")), (Texts{{"a", ""}}));
  EXPECT_EQ(test::texts_of(*load(path, "boxes")),
            (Texts{{"id", "INT"}, {"low", "REAL"}, {"high", "REAL"}, {"name", ""}}));
  EXPECT_EQ(devcfg_load_table_schema(nullptr, nullptr), nullptr);
  EXPECT_EQ(devcfg_load_table_schema(path.data(), nullptr), nullptr);
}
