#include <sqlite3.h>

#include <chrono>
#include <functional>
#include <sstream>

#include "tests/support/bare_sqlite.h"
#include "tests/support/library.h"

namespace {

using Log = std::vector<std::string>;

// Called instead of each pause of the library.
std::function<void(unsigned)> on_pause = [](unsigned) {};

std::string busy_line(std::size_t count) {
  return "[CSqlite] ExecSQL Busy or Locked, count= " + std::to_string(count) + "\n";
}

// The result of each getter for the column v, and the value after it: integer, long, string, copy.
std::string getters(CSqlite& object) {
  int integer = 77;
  long number = 77;
  char text[32] = "kept";
  char* copy = text;
  std::ostringstream all;
  all << object.QGetIntegerByName("v", &integer) << ':' << integer << '|';
  all << object.QGetLongByName("v", &number) << ':' << number << '|';
  all << object.QGetStringByName("v", text) << ':' << text << '|';
  all << object.QGetStringByName1("v", &copy) << ':' << (copy != nullptr ? copy : "(null)");
  std::free(copy != text ? copy : nullptr);
  return all.str();
}

struct Sqlite : testing::Test {
  Sqlite() {
    EXPECT_TRUE(object_.openDatabase(path_.c_str()));
    EXPECT_TRUE(object_.ExecSQL("CREATE TABLE t(id INTEGER PRIMARY KEY AUTOINCREMENT, v)"));
    test::take_log();
  }

  test::TempDirectory directory_;
  std::string path_ = directory_.file("one.db");
  CSqlite object_{nullptr};
  char t_[2] = "t";
};

}  // namespace

// Replaces the system's function for the library.
extern "C" __attribute__((visibility("default"))) int usleep(useconds_t pause_us) {
  on_pause(pause_us);
  return 0;
}

TEST_F(Sqlite, GettersReadTheCurrentRow) {
  const std::pair<std::string, std::string> kRows[] = {
      {"NULL", "0:77|0:77|0:kept|0:(null)"},
      {"''", "1:0|1:0|1:|0:(null)"},
      {"'null'", "0:77|0:77|1:null|1:null"},
      {"'NULL'", "1:0|1:0|1:NULL|1:NULL"},
      {"' -12x'", "1:-12|1:-12|1: -12x|1: -12x"},
      {"3000000000", "1:-1294967296|1:3000000000|1:3000000000|1:3000000000"},
      {"'99999999999999999999'",
       "1:-1|1:9223372036854775807|1:99999999999999999999|1:99999999999999999999"},
      {"1.9", "1:1|1:1|1:1.9|1:1.9"},
  };
  std::string query = "SELECT 5 AS v";
  for (const auto& [value, expected] : kRows) {
    query += " UNION ALL SELECT " + value;
  }
  ASSERT_TRUE(object_.QuerySQL(query.c_str()));
  EXPECT_EQ(object_.QTotalRecords(), 9);
  for (const auto& [value, expected] : kRows) {
    object_.QNext();
    EXPECT_EQ(getters(object_), expected) << value;
  }
  const std::string kept = "0:77|0:77|0:kept|0:kept";
  object_.QNext();
  EXPECT_TRUE(object_.QEof() && getters(object_) == kept);
  object_.cursor = -1;
  EXPECT_EQ(getters(object_), kept);
  object_.QReset();
  EXPECT_EQ(getters(object_), "1:5|1:5|1:5|1:5");
  EXPECT_EQ(object_.getColumnIndex("V"), -1);
  object_.freeResult();
  EXPECT_EQ(getters(object_), kept);
}

TEST_F(Sqlite, OpensByEitherNameAndClosesUnlessAStatementIsUnfinished) {
  CSqlite nameless("");
  EXPECT_FALSE(nameless.openDatabase(nullptr) || nameless.openDatabase(directory_.path().c_str()));
  EXPECT_FALSE(nameless.db != nullptr || nameless.ExecSQL("SELECT 1") ||
               nameless.QuerySQL("SELECT 1") || nameless.Parametrized_ExecSQL("SELECT 1", nullptr));
  EXPECT_EQ(nameless.ExecSQL("SELECT 1", t_) + nameless.GetLastSequence(t_), -2);
  const Log log = test::take_debug_log();
  EXPECT_EQ(log.size(), 7U);
  EXPECT_EQ(Log(log.begin(), log.begin() + 2),
            (Log{"[CSqlite] Database name is NULL\n",
                 "[CSqlite] Can't open database: unable to open database file\n"}));
  EXPECT_EQ(CSqlite(std::string(2000, 'x').c_str()).db_name, std::string(1023, 'x'));
  sqlite3_stmt* own = nullptr;
  {
    CSqlite named(path_.c_str());
    EXPECT_TRUE(named.openDatabase(nullptr) && named.QuerySQL("SELECT 1") &&
                named.openDatabase(named.db_name));
    EXPECT_EQ(named.result_table, nullptr);
    ASSERT_EQ(sqlite3_prepare_v2(named.db, "SELECT 1", -1, &own, nullptr), SQLITE_OK);
    EXPECT_FALSE(named.closeDatabase() || named.openDatabase("other"));
    EXPECT_TRUE(named.db_name == path_ && named.ExecSQL("SELECT 1"));
  }  // closed before the statement is
  sqlite3_finalize(own);
  EXPECT_TRUE(object_.closeDatabase() && object_.closeDatabase());
}

TEST_F(Sqlite, AFailureClosesTheConnectionExceptOfParameterizedStatements) {
  EXPECT_FALSE(object_.ExecSQL("INSERT INTO t(v) VALUES(1); SELEC") || object_.db != nullptr);
  EXPECT_TRUE(object_.openDatabase(nullptr) && !object_.QuerySQL("SELECT * FROM missing"));
  EXPECT_TRUE(object_.db == nullptr && object_.openDatabase(nullptr));
  const char insert[] = "INSERT INTO t VALUES(?, ?)";
  EXPECT_FALSE(object_.Parametrized_ExecSQL("SELECT ?", "x", nullptr) ||
               object_.Parametrized_ExecSQL("nonsense", nullptr) ||
               object_.Parametrized_ExecSQL(insert, "1", nullptr));
  EXPECT_EQ(object_.last_rc, SQLITE_CONSTRAINT);
  sqlite3_limit(object_.db, SQLITE_LIMIT_LENGTH, 100);
  EXPECT_FALSE(object_.Parametrized_ExecSQL(insert, std::string(101, '1').c_str(), nullptr));
  EXPECT_TRUE(object_.Parametrized_ExecSQL(insert, "7", "it's", "more", nullptr) &&
              object_.Parametrized_ExecSQL(insert, nullptr));
  EXPECT_EQ(test::BareSqlite(path_).query("SELECT * FROM t")->cells,
            (test::SqlTable{3, 2, {"id", "v", "1", "1", "7", "it's", "8", std::nullopt}}.cells));
  EXPECT_EQ(test::take_debug_log(),
            (Log{"[CSqlite] ExecSQL error: near \"SELEC\": syntax error\n",
                 "[CSqlite] exec sql error: no such table: missing",
                 "[CSqlite] sqlite3_step error: another row available\n",
                 "[CSqlite] sqlite3_prepare_v2 error: near \"nonsense\": syntax error\n",
                 "[CSqlite] sqlite3_step error: UNIQUE constraint failed: t.id\n",
                 "[CSqlite] sqlite3_step error: string or blob too big\n"}));
}

// Each row: the statements, the table whose counter is read (or none), and the result.
TEST_F(Sqlite, ResultsAreThoseOfTheBareInterface) {
  const std::string kLong(300, 'n'), rest = "(id INTEGER PRIMARY KEY AUTOINCREMENT);";
  const std::string insert = "INSERT INTO t(v) VALUES('a')";
  const std::tuple<std::string, std::string, int> kRows[] = {
      {"SELECT * FROM t", "", 1},
      {"SELECT id, v, v AS id FROM t; SELECT 2", "", 0},
      {"SELECT 1 AS a; SELECT 2; -- no more", "", 1},
      {"SELECT * FROM t WHERE 0", "", 1},
      {insert + "; " + insert + ";;", "t", 6},
      {insert + " RETURNING v, id AS \"a\"\"b\"", "t", -1},
      {"SELECT 7 AS seq UNION ALL SELECT NULL", "t", 7},
      {"DELETE FROM t; SELECT * FROM t", "t", 4},
      {"BEGIN; " + insert + "; COMMIT", "t", 5},
      {insert + " -- and", "t", -1},
      {"INSERT INTO [it's] VALUES(NULL)", "it''s", 1},
      {"INSERT INTO " + kLong + " VALUES(41)", kLong, 41},
      {"", "missing", -1},
  };
  for (auto [sql, name, result] : kRows) {
    const test::BareSqlite bare(":memory:");
    const std::string tables = "CREATE TABLE [it's]" + rest + "CREATE TABLE " + kLong + rest +
                               "CREATE TABLE t(id INTEGER PRIMARY KEY AUTOINCREMENT, v);"
                               "INSERT INTO t(v) VALUES(1), (NULL), (''), (x'414200')";
    ASSERT_TRUE(object_.openDatabase(":memory:") && object_.ExecSQL(tables.c_str()));
    ASSERT_EQ(bare.exec(tables), 0);
    const std::string sequence = "; SELECT seq FROM sqlite_sequence WHERE name='" + name + "'";
    EXPECT_EQ(
        name.empty() ? object_.QuerySQL(sql.c_str()) : object_.ExecSQL(sql.c_str(), name.data()),
        result)
        << sql;
    const auto expected = bare.query(sql + (name.empty() ? "" : sequence));
    EXPECT_EQ(object_.db != nullptr, expected.has_value()) << sql;
    EXPECT_TRUE(!expected || *expected == test::sql_table(object_.result_table, object_.row_count,
                                                          object_.column_count))
        << sql;
  }
  char attack[] = "x'; DROP TABLE t; SELECT '1";
  ASSERT_TRUE(object_.openDatabase(path_.c_str()));
  EXPECT_EQ(object_.ExecSQL("INSERT INTO t(v) VALUES('a')", attack), -1);
  EXPECT_EQ(object_.db, nullptr);
  EXPECT_EQ(test::BareSqlite(path_).query("SELECT v FROM t")->rows, 1);
}

// The second statement meets a lock on another file, after the first one has taken effect.
TEST_F(Sqlite, WaitsForALockAndDoesNotRepeatAStatementThatRan) {
  const test::BareSqlite holder(directory_.file("two.db"));
  ASSERT_EQ(holder.exec("CREATE TABLE u(w); BEGIN IMMEDIATE"), SQLITE_OK);
  ASSERT_TRUE(object_.ExecSQL(("ATTACH '" + directory_.file("two.db") + "' AS two").c_str()));
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(50);
  Log expected;
  on_pause = [&](unsigned pause_us) {
    expected.push_back(busy_line(expected.size()));
    EXPECT_EQ(pause_us, 10U);
    holder.exec(std::chrono::steady_clock::now() >= end ? "COMMIT" : "");
  };
  EXPECT_EQ(object_.ExecSQL("INSERT INTO t(v) VALUES('a'); INSERT INTO two.u VALUES(1)", t_), 1);
  EXPECT_GT(expected.size(), 1U);
  EXPECT_EQ(test::take_debug_log(), expected);
  EXPECT_EQ(holder.query("SELECT * FROM u")->rows, 1);
  on_pause = [](unsigned) {};
}

TEST_F(Sqlite, ExhaustedRetriesCountAsSuccess) {
  const test::BareSqlite holder(path_);
  ASSERT_EQ(holder.exec("BEGIN EXCLUSIVE"), 0);
  CSqlite fresh(path_.c_str());  // has to read the schema first
  ASSERT_TRUE(fresh.openDatabase(nullptr));
  const std::function<bool()> kOperations[] = {
      [&] { return object_.ExecSQL("DELETE FROM t") && object_.last_rc == SQLITE_BUSY; },
      [&] { return object_.Parametrized_ExecSQL("DELETE FROM t", nullptr); },
      [&] { return fresh.Parametrized_ExecSQL("DELETE FROM t", nullptr); },
      [&] { return object_.QuerySQL("SELECT * FROM t") && object_.QTotalRecords() == 0; },
      [&] { return object_.ExecSQL("DELETE FROM t", t_) == -1; }};
  for (const auto& operation : kOperations) {
    EXPECT_TRUE(operation() && object_.db != nullptr);
    const Log log = test::take_debug_log();
    ASSERT_EQ(log.size(), 100'000U);
    EXPECT_EQ(log.back(), busy_line(99'999));
  }
}
