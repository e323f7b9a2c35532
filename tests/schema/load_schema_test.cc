#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <random>

#include "tests/support/bare_sqlite.h"
#include "tests/support/captured_log.h"
#include "tests/support/columns.h"
#include "tests/support/temp_folder.h"

namespace {

using test::BareSqlite;
using test::Columns;
using test::load;
using test::Texts;

std::string in_marks(const std::string& text, char mark) {
  std::string result(1, mark);
  for (const char byte : text) {
    result.append(byte == mark ? 2 : 1, byte);
  }
  return result += mark;
}

// A declared type, as SQL, and its first word.
struct Type {
  const char* sql;
  const char* word;
};
constexpr Type kTypes[] = {
    {"INTEGER", "INTEGER"},
    {"text", "text"},
    {"VARCHAR(20)", "VARCHAR(20)"},
    {"VARCHAR (20)", "VARCHAR"},
    {"DECIMAL(10, 2)", "DECIMAL(10,2)"},
    {"DECIMAL(\n10 /*,)*/ , -2)", "DECIMAL(10,-2)"},
    {"UNSIGNED BIG INT", "UNSIGNED"},
    {"double\tprecision", "double"},
    {"int/* c */big", "int"},
    {"long -- , c TEXT)\n varchar", "long"},
    {"", ""},
    {"\"\"", ""},
    {"\"a type\"", "a"},
    {"[x;DROP]", "x;DROP"},
    {"'UNIQUE'", "UNIQUE"},
    {"\"t)--\"", "t)"},
    {"`NOT`", "NOT"},
};
// clang-format off
constexpr const char* kConstraints[] = {
    "", "", "", " NOT NULL", " DEFAULT 'a, b INT'", " DEFAULT (1 + (2))", " CHECK (1 IN (1, 2))",
    " UNIQUE", " COLLATE NOCASE", " REFERENCES canary(a)", " AS (1) STORED", " AS ('x, y')",
    "/* , z TEXT */", " -- it's, \"one\"\n", " CONSTRAINT \"c, d\" NOT NULL"};
constexpr const char* kNames[] = {
    "plain", "Plain_2$", "\xC3\xA4", "two words", "a,b", "(", ")", "it's", "say \"x\"", "[x]", "tab\tx",
    "line\nx", "select", "column", "constraint", "primary", "x; DROP TABLE canary; --", "/*", "--",
    "%s%n", "1st", "", " ", "x INTEGER, y", "\\", "`"};
constexpr const char* kTableConstraints[] = {
    "", "", ", UNIQUE (canary_key, [c0])", ", CONSTRAINT x PRIMARY KEY (canary_key)",
    ", CHECK (1 IN (1, 2)), FOREIGN KEY(c0) REFERENCES canary(a)", ", -- end\n UNIQUE(c0)"};
// clang-format on

class Maker {
 public:
  explicit Maker(unsigned seed) : random_(seed) {}

  template <typename Item, std::size_t count>
  const Item& pick(const Item (&items)[count]) {
    return items[random_() % count];
  }

  // Appends the columns to `expected`.
  std::string statement(const std::string& table, Texts& expected) {
    std::string sql = "CREATE TABLE " + name(table) + (coin() ? "(" : " ( ");
    const unsigned count = 1 + random_() % 8;
    sql += "c0" + add(expected, "c0") + ", canary_key";
    expected.emplace_back("canary_key", "");
    for (unsigned i = 0; i < count; ++i) {
      const std::string column = pick(kNames) + std::to_string(i);
      sql += (coin() ? ", " : ",\n\t") + name(column) + add(expected, column) + pick(kConstraints);
    }
    return sql + pick(kTableConstraints) + ")" + (coin() ? "" : " -- after");
  }

 private:
  bool coin() { return random_() % 2 == 0; }
  std::string name(const std::string& text) {
    const bool brackets = coin() && text.find(']') == std::string::npos;
    return brackets ? "[" + text + "]" : in_marks(text, coin() ? '"' : '`');
  }
  std::string add(Texts& expected, const std::string& column) {
    const Type& type = pick(kTypes);
    expected.emplace_back(column, type.word);
    return std::string(coin() ? " " : "\t\n ") + type.sql;
  }

  std::mt19937 random_;
};

// Letter case aside: SQLite tells some types in upper case only.
Texts lower(Texts texts) {
  for (auto& text : texts) {
    std::transform(text.second.begin(), text.second.end(), text.second.begin(), ::tolower);
  }
  return texts;
}

// The names as PRAGMA table_xinfo tells them.
void expect_names(const table_info& columns, const BareSqlite& db, const std::string& table) {
  const auto rows = db.query("PRAGMA table_xinfo(" + in_marks(table, '\'') + ")");
  ASSERT_EQ(columns.col_count, rows->rows) << table;
  for (int row = 0; row < rows->rows; ++row) {
    EXPECT_EQ(columns.col_name[row], rows->at(row, 1)) << table;
  }
}

}  // namespace

// The thousands of changes below need not survive a power cut.
extern "C" __attribute__((visibility("default"))) int fdatasync(int) { return 0; }
extern "C" __attribute__((visibility("default"))) int fsync(int) { return 0; }

TEST(LoadSchema, PlainStatementsAsWritten) {
  struct Row {
    const char* statement;
    Texts columns;
  };
  const Row kRows[] = {
      {"CREATE TABLE t (a INTEGER, b TEXT)", {{"a", "INTEGER"}, {"b", "TEXT"}}},
      {"CREATE TABLE t (\"a\" INTEGER,\"b\" TEXT DEFAULT 'x')", {{"a", "INTEGER"}, {"b", "TEXT"}}},
      {"CREATE TABLE t(a integer PRIMARY KEY, b Text)", {{"a", "integer"}, {"b", "Text"}}},
      {"CREATE TABLE t(a VARCHAR(20), ab real NOT NULL)", {{"a", "VARCHAR(20)"}, {"ab", "real"}}},
      {"CREATE TABLE t(guid blob, id int)", {{"guid", "blob"}, {"id", "int"}}},
      {"CREATE TABLE t AS SELECT 1 AS a", {{"a", ""}}},
      {"CREATE VIRTUAL TABLE t USING fts5(a, b)", {{"a", ""}, {"b", ""}}},
  };
  for (const Row& row : kRows) {
    const test::TempFolder folder;
    const std::string path = folder.file("a.db");
    ASSERT_EQ(BareSqlite(path).exec(row.statement), 0) << row.statement;
    EXPECT_EQ(test::texts_of(*load(path, "t")), row.columns) << row.statement;
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
  const std::string kCanary = "CREATE TABLE canary(a INTEGER PRIMARY KEY, b UNIQUE)";
  for (const BareSqlite* db : {&wanted, &current}) {
    ASSERT_EQ(db->exec(kCanary), 0);
  }
  Maker maker(20260801);
  for (int round = 0; round < 2000; ++round) {
    std::string table = maker.pick(kNames);
    Texts expected;
    const std::string statement = maker.statement(table, expected);
    ASSERT_EQ(wanted.exec(statement), 0) << statement;
    const Columns columns = load(wanted_path, table);
    ASSERT_NE(columns, nullptr) << statement;
    EXPECT_EQ(lower(test::texts_of(*columns)), lower(expected)) << statement;
    expect_names(*columns, wanted, table);

    ASSERT_EQ(current.exec("CREATE TABLE " + in_marks(table, '"') + "(old)"), 0);
    ASSERT_EQ(devcfg_update_table(columns.get(), table.data(), path.data()), 0) << statement;
    Texts after = test::texts_of(*load(path, table));
    after.erase(after.begin());
    EXPECT_EQ(lower(after), lower(expected)) << statement;
    EXPECT_EQ(current.query("SELECT count(*) FROM sqlite_master WHERE type='table'")->at(0, 0),
              "2");
    for (const BareSqlite* db : {&wanted, &current}) {
      ASSERT_EQ(db->exec("DROP TABLE " + in_marks(table, '"')), 0) << statement;
    }
    test::take_log();
  }
}

TEST(LoadSchema, TellsWhyThereIsNoList) {
  const test::TempFolder folder;
  const std::string path = folder.file("a.db");
  const std::string text = folder.file("text");
  test::write_file(text, std::string(4096, 'x'));
  ASSERT_EQ(BareSqlite(path).exec("CREATE TABLE t(a); CREATE VIEW v AS SELECT 1; CREATE TABLE n(" +
                                  std::string(128, 'n') + "); CREATE TABLE w(a " +
                                  std::string(128, 't') + "); CREATE TABLE fits(" +
                                  std::string(127, 'n') + " " + std::string(127, 't') + ")"),
            0);
  struct Row {
    std::string path;
    std::string table;
    std::string line;
  };
  const std::string none = "No target table in db: " + path;
  const std::string too_long = " is longer than 127 bytes";
  const Row kRows[] = {
      {"", "t", "Open database Error, ."},
      {folder.path(), "t", "Open database Error, " + folder.path() + "."},
      {text, "t", "QuerySQL Error"},
      {path, "T", none},
      {path, "v", none},
      {path, "x' OR '1'='1", none},
      {path, "n", "Column " + std::string(128, 'n') + ": the name or the type word " + too_long},
      {path, "w", "Column a: the name or the type word " + std::string(128, 't') + too_long},
  };
  for (const Row& row : kRows) {
    test::take_log();
    EXPECT_EQ(load(row.path, row.table), nullptr) << row.table;
    EXPECT_EQ(test::take_product_log(),
              std::vector<std::string>{"[devcfg_load_table_schema] " + row.line});
  }
  EXPECT_EQ(load(path, "fits")->col_count, 1);
  EXPECT_EQ(devcfg_load_table_schema(nullptr, nullptr), nullptr);
  std::string copy = path;
  EXPECT_EQ(devcfg_load_table_schema(copy.data(), nullptr), nullptr);
}
