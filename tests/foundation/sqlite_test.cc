#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <functional>
#include <memory>

#include "orvaneip.h"
#include "tests/support/bare_sqlite.h"
#include "tests/support/captured_log.h"
#include "tests/support/temp_folder.h"

namespace {

// What happens instead of each pause of the library.
std::function<void(unsigned)> on_pause;

std::string busy_line(std::size_t count) {
  return "[CSqlite] ExecSQL Busy or Locked, count= " + std::to_string(count) + "\n";
}

test::SqlTable table_of(const CSqlite& object) {
  return test::sql_table(object.result_table, object.row_count, object.column_count);
}

class Sqlite : public testing::Test {
 protected:
  Sqlite() {
    EXPECT_TRUE(object_->openDatabase(path_.c_str()));
    EXPECT_TRUE(object_->ExecSQL("CREATE TABLE t(id INTEGER PRIMARY KEY AUTOINCREMENT, v)"));
    test::take_log();
  }
  ~Sqlite() override { on_pause = nullptr; }

  test::TempFolder folder_;
  std::string path_ = folder_.file("one.db");
  std::unique_ptr<CSqlite> object_ = std::make_unique<CSqlite>(nullptr);
};

using Log = std::vector<std::string>;

}  // namespace

// The library asks this program to sleep.
extern "C" __attribute__((visibility("default"))) int usleep(useconds_t pause_us) {
  on_pause(pause_us);
  return 0;
}

TEST_F(Sqlite, QueriesGiveWhatTheBareInterfaceGives) {
  const test::BareSqlite bare(path_);
  ASSERT_EQ(bare.exec("INSERT INTO t(v) VALUES(1), (NULL), (''), ('null'), (2.5), (x'414200')"), 0);
  const char* const kQueries[] = {"SELECT * FROM t",
                                  "SELECT id, v, v AS id FROM t",
                                  "SELECT 1 AS a; SELECT 2",
                                  "SELECT * FROM t WHERE 0",
                                  "",
                                  " -- nothing"};
  for (const char* query : kQueries) {
    ASSERT_TRUE(object_->QuerySQL(query)) << query;
    EXPECT_EQ(table_of(*object_), bare.query(query)) << query;
  }
  EXPECT_EQ(test::take_log(), Log());
}

TEST_F(Sqlite, GettersReadTheCurrentRow) {
  struct Row {
    const char* value;  // in SQL
    const char* text;   // null: false
    bool is_number;
    int integer;
    long number;
  };
  const Row kRows[] = {
      {"NULL", nullptr, false, 0, 0},
      {"''", "", true, 0, 0},
      {"'null'", "null", false, 0, 0},
      {"'NULL'", "NULL", true, 0, 0},
      {"' -12x'", " -12x", true, -12, -12},
      {"3000000000", "3000000000", true, -1294967296, 3'000'000'000},
      {"'99999999999999999999'", "99999999999999999999", true, -1, 9'223'372'036'854'775'807},
      {"1.9", "1.9", true, 1, 1},
  };
  for (const Row& row : kRows) {
    ASSERT_TRUE(
        object_->ExecSQL((std::string("INSERT INTO t(v) VALUES(") + row.value + ")").c_str()));
  }
  ASSERT_TRUE(object_->QuerySQL("SELECT id, v FROM t"));
  EXPECT_EQ(object_->QTotalRecords(), static_cast<int>(std::size(kRows)));
  EXPECT_EQ(object_->getColumnIndex("V"), -1);
  for (const Row& row : kRows) {
    int integer = 77;
    long number = 77;
    char text[32] = "kept";
    char other[] = "x";
    char* copy = other;
    EXPECT_EQ(object_->QGetIntegerByName("v", &integer), row.is_number) << row.value;
    EXPECT_EQ(object_->QGetLongByName("v", &number), row.is_number) << row.value;
    EXPECT_EQ(integer, row.is_number ? row.integer : 77) << row.value;
    EXPECT_EQ(number, row.is_number ? row.number : 77) << row.value;
    EXPECT_EQ(object_->QGetStringByName("v", text), row.text != nullptr) << row.value;
    EXPECT_STREQ(text, row.text != nullptr ? row.text : "kept");
    EXPECT_FALSE(object_->QGetStringByName1("missing", &copy));
    EXPECT_EQ(copy, other);
    const bool has_copy = row.text != nullptr && *row.text != '\0';
    EXPECT_EQ(object_->QGetStringByName1("v", &copy), has_copy) << row.value;
    EXPECT_STREQ(copy, has_copy ? row.text : nullptr);
    std::free(copy);
    object_->QNext();
  }
  int id = 77;
  object_->QNext();
  EXPECT_TRUE(object_->QEof());
  EXPECT_FALSE(object_->QGetIntegerByName("id", &id));
  object_->QReset();
  EXPECT_TRUE(object_->QGetIntegerByName("id", &id));
  EXPECT_EQ(id, 1);
  object_->freeResult();
  EXPECT_FALSE(object_->QGetIntegerByName("id", &id));
}

TEST_F(Sqlite, OpensByEitherNameAndTellsFailures) {
  const std::string folder = folder_.path();
  CSqlite nameless("");
  EXPECT_FALSE(nameless.openDatabase(nullptr));
  EXPECT_FALSE(nameless.openDatabase(folder.c_str()));
  EXPECT_EQ(nameless.db, nullptr);
  EXPECT_EQ(test::take_debug_log(),
            (Log{"[CSqlite] Database name is NULL\n",
                 "[CSqlite] Can't open database: unable to open database file\n"}));
  CSqlite named(path_.c_str());
  EXPECT_TRUE(named.openDatabase(nullptr));
  EXPECT_TRUE(named.QuerySQL("SELECT 1"));
  EXPECT_TRUE(named.openDatabase(named.db_name));
  EXPECT_EQ(named.db_name, path_);
  EXPECT_EQ(named.result_table, nullptr);
  const CSqlite long_named(std::string(2000, 'x').c_str());
  EXPECT_EQ(long_named.db_name, std::string(1023, 'x'));
}

TEST_F(Sqlite, AClosedObjectAndNullArgumentsAnswerFalse) {
  char table[] = "t";
  char text[8] = "";
  EXPECT_FALSE(object_->ExecSQL(nullptr));
  EXPECT_FALSE(object_->QuerySQL(nullptr));
  EXPECT_FALSE(object_->Parametrized_ExecSQL(nullptr, nullptr));
  EXPECT_EQ(object_->ExecSQL(nullptr, table), -1);
  EXPECT_EQ(object_->ExecSQL("SELECT 1", nullptr), -1);
  EXPECT_EQ(object_->GetLastSequence(nullptr), -1);
  ASSERT_TRUE(object_->QuerySQL("SELECT 1 AS a"));
  EXPECT_FALSE(object_->QGetIntegerByName("a", nullptr));
  EXPECT_FALSE(object_->QGetStringByName(nullptr, text));
  EXPECT_FALSE(object_->QGetStringByName1("a", nullptr));

  EXPECT_TRUE(object_->closeDatabase());
  EXPECT_TRUE(object_->closeDatabase());
  test::take_log();
  EXPECT_FALSE(object_->ExecSQL("SELECT 1"));
  EXPECT_FALSE(object_->Parametrized_ExecSQL("SELECT 1", nullptr));
  EXPECT_FALSE(object_->QuerySQL("SELECT 1"));
  EXPECT_EQ(object_->ExecSQL("SELECT 1", table), -1);
  EXPECT_EQ(object_->GetLastSequence(table), -1);
  const Log log = test::take_debug_log();
  ASSERT_EQ(log.size(), 5U);
  EXPECT_EQ(log[0], "[CSqlite] ExecSQL error: the database is not open\n");
  EXPECT_FALSE(object_->QGetStringByName("a", text));
  EXPECT_EQ(object_->getColumnIndex("a"), -1);
}

TEST_F(Sqlite, FailingTextsCloseAndParametersDoNot) {
  EXPECT_FALSE(object_->ExecSQL("INSERT INTO t(v) VALUES(1); SELEC"));
  EXPECT_EQ(object_->db, nullptr);
  EXPECT_TRUE(object_->openDatabase(nullptr));
  EXPECT_FALSE(object_->QuerySQL("SELECT * FROM missing"));
  EXPECT_EQ(object_->db, nullptr);
  EXPECT_TRUE(object_->openDatabase(nullptr));
  EXPECT_FALSE(object_->Parametrized_ExecSQL("SELECT ?", "x", nullptr));
  EXPECT_FALSE(object_->Parametrized_ExecSQL("nonsense", nullptr));
  EXPECT_FALSE(object_->Parametrized_ExecSQL("INSERT INTO t(id) VALUES(?)", "1", nullptr));
  EXPECT_EQ(object_->last_rc, SQLITE_CONSTRAINT);
  EXPECT_TRUE(
      object_->Parametrized_ExecSQL("INSERT INTO t VALUES(?, ?)", "7", "it's", "more", nullptr));
  EXPECT_TRUE(object_->Parametrized_ExecSQL("INSERT INTO t VALUES(?, ?)", nullptr));
  EXPECT_EQ(test::BareSqlite(path_).query("SELECT * FROM t")->cells,
            (test::SqlTable{3, 2, {"id", "v", "1", "1", "7", "it's", "8", std::nullopt}}.cells));
  EXPECT_EQ(test::take_debug_log(),
            (Log{"[CSqlite] ExecSQL error: near \"SELEC\": syntax error\n",
                 "[CSqlite] exec sql error: no such table: missing",
                 "[CSqlite] sqlite3_step error: another row available\n",
                 "[CSqlite] sqlite3_prepare_v2 error: near \"nonsense\": syntax error\n",
                 "[CSqlite] sqlite3_step error: UNIQUE constraint failed: t.id\n"}));
}

TEST_F(Sqlite, ARefusedCloseLeavesItOpen) {
  sqlite3_stmt* own = nullptr;
  ASSERT_EQ(sqlite3_prepare_v2(object_->db, "SELECT 1", -1, &own, nullptr), SQLITE_OK);
  EXPECT_FALSE(object_->closeDatabase());
  EXPECT_FALSE(object_->openDatabase(nullptr));
  EXPECT_TRUE(object_->ExecSQL("SELECT 1"));
  object_.reset();
  EXPECT_EQ(test::take_debug_log().size(), 3U);
  sqlite3_finalize(own);
}

// Each text with the sequence's query behind it, against sqlite3_get_table on a copy of the file.
TEST_F(Sqlite, SequencesGiveWhatTheBareInterfaceGives) {
  const std::string kLong(300, 'n');
  ASSERT_TRUE(object_->ExecSQL(("CREATE TABLE [it's](id INTEGER PRIMARY KEY AUTOINCREMENT);"
                                "INSERT INTO t(v) VALUES('first');"
                                "CREATE TABLE " +
                                kLong + "(id INTEGER PRIMARY KEY AUTOINCREMENT)")
                                   .c_str()));
  struct Row {
    std::string sql;
    std::string table;
    int sequence;
  };
  const Row kRows[] = {
      {"INSERT INTO t(v) VALUES('a')", "t", 2},
      {"INSERT INTO t(v) VALUES('a'); INSERT INTO t(v) VALUES('b');;", "t", 3},
      {"INSERT INTO t(v) VALUES('a') RETURNING v, id AS \"a\"\"b\"", "t", -1},
      {"INSERT INTO t(v) VALUES('a') RETURNING id", "t", -1},
      {"SELECT 7 AS seq UNION ALL SELECT NULL", "t", 7},
      {"SELECT 7 AS seq WHERE 0", "t", 1},
      {"DELETE FROM t; SELECT * FROM t", "t", 1},
      {"BEGIN; INSERT INTO t(v) VALUES('a'); COMMIT", "t", 2},
      {"INSERT INTO t(v) VALUES('a') -- and", "t", -1},
      {"INSERT INTO t(v) VALUES('a'); nonsense", "t", -1},
      {"INSERT INTO [it's] VALUES(NULL)", "it''s", 1},
      {"INSERT INTO [it's] VALUES(NULL)", "it's", -1},
      {"INSERT INTO " + kLong + " VALUES(41)", kLong, 41},
      {"SELECT 1", "missing", -1},
      {"", "t", 1},
  };
  const std::string fresh = test::read_file(path_);
  for (const Row& row : kRows) {
    const std::string twin = folder_.file("twin.db");
    test::write_file(path_, fresh);
    test::write_file(twin, fresh);
    ASSERT_TRUE(object_->openDatabase(path_.c_str()));
    const test::BareSqlite bare(twin);
    std::string table = row.table;
    EXPECT_EQ(object_->ExecSQL(row.sql.c_str(), table.data()), row.sequence) << row.sql;
    const auto expected =
        bare.query(row.sql + "; SELECT seq FROM sqlite_sequence WHERE name='" + row.table + "'");
    EXPECT_EQ(object_->db != nullptr, expected.has_value()) << row.sql;
    if (expected) {
      EXPECT_EQ(table_of(*object_), *expected) << row.sql;
    }
    EXPECT_EQ(test::BareSqlite(path_).query("SELECT * FROM t"), bare.query("SELECT * FROM t"));
  }
  ASSERT_TRUE(object_->openDatabase(nullptr));
  std::string table = kLong;
  EXPECT_EQ(object_->GetLastSequence(table.data()), -1);
}

TEST_F(Sqlite, ATableNameRunsNothing) {
  char attack[] = "x'; DROP TABLE t; SELECT '1";
  EXPECT_EQ(object_->GetLastSequence(attack), -1);
  EXPECT_EQ(object_->db, nullptr);
  ASSERT_TRUE(object_->openDatabase(nullptr));
  EXPECT_EQ(object_->ExecSQL("INSERT INTO t(v) VALUES('a')", attack), -1);
  EXPECT_EQ(object_->db, nullptr);
  EXPECT_EQ(test::BareSqlite(path_).query("SELECT v FROM t")->rows, 1);
  EXPECT_EQ(test::take_debug_log(),
            (Log(2, "[CSqlite] exec sql error: unrecognized token: \"'x''\"")));
}

TEST_F(Sqlite, ALockOf50MillisecondsIsWaitedOut) {
  const test::BareSqlite holder(path_);
  ASSERT_EQ(holder.exec("BEGIN EXCLUSIVE"), SQLITE_OK);
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(50);
  std::size_t pauses = 0;
  on_pause = [&](unsigned pause_us) {
    ++pauses;
    EXPECT_EQ(pause_us, 10U);
    if (std::chrono::steady_clock::now() >= end) {
      holder.exec("COMMIT");
    }
  };
  EXPECT_TRUE(object_->ExecSQL("INSERT INTO t(v) VALUES('a')"));
  const Log log = test::take_debug_log();
  EXPECT_GT(pauses, 1U);
  ASSERT_EQ(log.size(), pauses);
  for (std::size_t i = 0; i < pauses; ++i) {
    EXPECT_EQ(log[i], busy_line(i));
  }
  EXPECT_TRUE(object_->QuerySQL("SELECT v FROM t"));
  EXPECT_EQ(object_->QTotalRecords(), 1);
}

// The second statement meets a lock on another file; the first one has taken effect by then.
TEST_F(Sqlite, AStatementThatRanIsNotRunAgain) {
  const test::BareSqlite holder(folder_.file("two.db"));
  ASSERT_EQ(holder.exec("CREATE TABLE u(w); BEGIN IMMEDIATE"), SQLITE_OK);
  ASSERT_TRUE(object_->ExecSQL(("ATTACH '" + folder_.file("two.db") + "' AS two").c_str()));
  int pauses = 0;
  on_pause = [&](unsigned) {
    if (++pauses == 3) {
      holder.exec("COMMIT");
    }
  };
  char table[] = "t";
  EXPECT_EQ(object_->ExecSQL("INSERT INTO t(v) VALUES('a'); INSERT INTO two.u VALUES(1)", table),
            1);
  EXPECT_EQ(pauses, 3);
  EXPECT_EQ(test::take_debug_log(), (Log{busy_line(0), busy_line(1), busy_line(2)}));
  EXPECT_EQ(holder.query("SELECT * FROM u")->rows, 1);
}

TEST_F(Sqlite, ExhaustedRetriesCountAsSuccess) {
  const test::BareSqlite holder(path_);
  ASSERT_EQ(holder.exec("BEGIN EXCLUSIVE"), SQLITE_OK);
  int pauses = 0;
  on_pause = [&](unsigned) { ++pauses; };
  char table[] = "t";
  const std::function<bool()> kOperations[] = {
      [&] { return object_->ExecSQL("DELETE FROM t") && object_->last_rc == SQLITE_BUSY; },
      [&] { return object_->Parametrized_ExecSQL("DELETE FROM t", nullptr); },
      [&] { return object_->QuerySQL("SELECT * FROM t") && object_->QTotalRecords() == 0; },
      [&] { return object_->ExecSQL("DELETE FROM t", table) == -1; },
  };
  for (const auto& operation : kOperations) {
    pauses = 0;
    EXPECT_TRUE(operation());
    EXPECT_EQ(pauses, 100'000);
    EXPECT_NE(object_->db, nullptr);
    const Log log = test::take_debug_log();
    ASSERT_EQ(log.size(), 100'000U);
    EXPECT_EQ(log.front(), busy_line(0));
    EXPECT_EQ(log.back(), busy_line(99'999));
  }
}
