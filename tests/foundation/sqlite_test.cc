#include <sqlite3.h>

#include <chrono>
#include <functional>
#include <memory>

#include "tests/support/bare_sqlite.h"
#include "tests/support/library.h"

namespace {

using Log = std::vector<std::string>;

// What happens instead of each pause of the library.
std::function<void(unsigned)> on_pause = [](unsigned) {};

std::string busy_line(std::size_t count) {
  return "[CSqlite] ExecSQL Busy or Locked, count= " + std::to_string(count) + "\n";
}

// What the getters of v answer and leave behind: an integer, a long, a text and its copy.
std::string getters(CSqlite& object) {
  int integer = 77;
  long number = 77;
  char text[32] = "kept";
  char* copy = text;
  std::string all = object.QGetIntegerByName("v", &integer) ? "1:" : "0:";
  all += std::to_string(integer) + (object.QGetLongByName("v", &number) ? "|1:" : "|0:");
  all += std::to_string(number) + (object.QGetStringByName("v", text) ? "|1:" : "|0:");
  all += text + std::string(object.QGetStringByName1("v", &copy) ? "|1:" : "|0:");
  all += copy != nullptr ? copy : "(null)";
  std::free(copy != text ? copy : nullptr);
  return all;
}

class Sqlite : public testing::Test {
 protected:
  Sqlite() {
    EXPECT_TRUE(object_->openDatabase(path_.c_str()));
    EXPECT_TRUE(object_->ExecSQL("CREATE TABLE t(id INTEGER PRIMARY KEY AUTOINCREMENT, v)"));
    test::take_log();
  }

  test::SqlTable table() const {
    return test::sql_table(object_->result_table, object_->row_count, object_->column_count);
  }

  test::TempFolder folder_;
  std::string path_ = folder_.file("one.db");
  std::unique_ptr<CSqlite> object_ = std::make_unique<CSqlite>(nullptr);
  char t_[2] = "t";
};

}  // namespace

// The library asks this program to sleep.
extern "C" __attribute__((visibility("default"))) int usleep(useconds_t pause_us) {
  on_pause(pause_us);
  return 0;
}

TEST_F(Sqlite, QueriesGiveWhatTheBareInterfaceGives) {
  const test::BareSqlite bare(path_);
  ASSERT_EQ(bare.exec("INSERT INTO t(v) VALUES(1), (NULL), (''), ('null'), (2.5), (x'414200')"), 0);
  for (const char* query : {"SELECT * FROM t", "SELECT id, v, v AS id FROM t",
                            "SELECT 1 AS a; SELECT 2", "SELECT * FROM t WHERE 0", " -- nothing"}) {
    ASSERT_TRUE(object_->QuerySQL(query)) << query;
    EXPECT_EQ(table(), bare.query(query)) << query;
  }
}

TEST_F(Sqlite, GettersReadTheCurrentRow) {
  const std::pair<std::string, const char*> kRows[] = {
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
  for (const auto& [value, expected] : kRows) {
    ASSERT_TRUE(object_->QuerySQL(("SELECT 5 AS v UNION ALL SELECT " + value).c_str()));
    EXPECT_EQ(object_->QTotalRecords(), 2);
    object_->QNext();
    EXPECT_EQ(getters(*object_), expected) << value;
    object_->QNext();
    EXPECT_TRUE(object_->QEof());
    object_->QReset();
    EXPECT_EQ(getters(*object_), "1:5|1:5|1:5|1:5");
  }
  for (const int outside : {-1, 2}) {
    object_->cursor = outside;
    EXPECT_EQ(getters(*object_), "0:77|0:77|0:kept|0:kept");
  }
  EXPECT_EQ(object_->getColumnIndex("V"), -1);
  object_->freeResult();
  EXPECT_EQ(getters(*object_), "0:77|0:77|0:kept|0:kept");
}

TEST_F(Sqlite, OpensByEitherNameAndTellsFailures) {
  CSqlite nameless("");
  EXPECT_FALSE(nameless.openDatabase(nullptr) || nameless.openDatabase(folder_.path().c_str()));
  EXPECT_EQ(nameless.db, nullptr);
  EXPECT_EQ(test::take_debug_log(),
            (Log{"[CSqlite] Database name is NULL\n",
                 "[CSqlite] Can't open database: unable to open database file\n"}));
  CSqlite named(path_.c_str());
  EXPECT_TRUE(named.openDatabase(nullptr) && named.QuerySQL("SELECT 1") &&
              named.openDatabase(named.db_name));
  EXPECT_EQ(named.result_table, nullptr);
  EXPECT_EQ(CSqlite(std::string(2000, 'x').c_str()).db_name, std::string(1023, 'x'));
}

TEST_F(Sqlite, ARefusedCloseLeavesItOpenAndAClosedObjectAnswersFalse) {
  sqlite3_stmt* own = nullptr;
  ASSERT_EQ(sqlite3_prepare_v2(object_->db, "SELECT 1", -1, &own, nullptr), SQLITE_OK);
  EXPECT_FALSE(object_->closeDatabase() || object_->openDatabase("other"));
  EXPECT_EQ(object_->db_name, path_);
  EXPECT_TRUE(object_->ExecSQL("SELECT 1"));
  sqlite3_finalize(own);
  {
    CSqlite deleted(path_.c_str());
    ASSERT_TRUE(deleted.openDatabase(nullptr));
    ASSERT_EQ(sqlite3_prepare_v2(deleted.db, "SELECT 1", -1, &own, nullptr), SQLITE_OK);
  }
  sqlite3_finalize(own);
  EXPECT_TRUE(object_->closeDatabase() && object_->closeDatabase());
  test::take_log();
  EXPECT_FALSE(object_->ExecSQL("SELECT 1") || object_->QuerySQL("SELECT 1") ||
               object_->Parametrized_ExecSQL("SELECT 1", nullptr));
  EXPECT_EQ(object_->ExecSQL("SELECT 1", t_), -1);
  EXPECT_EQ(object_->GetLastSequence(t_), -1);
  EXPECT_EQ(test::take_debug_log().size(), 5U);
}

TEST_F(Sqlite, FailingTextsCloseAndParametersDoNot) {
  EXPECT_FALSE(object_->ExecSQL("INSERT INTO t(v) VALUES(1); SELEC") || object_->db != nullptr);
  EXPECT_TRUE(object_->openDatabase(nullptr));
  EXPECT_FALSE(object_->QuerySQL("SELECT * FROM missing") || object_->db != nullptr);
  EXPECT_TRUE(object_->openDatabase(nullptr));
  const char insert[] = "INSERT INTO t VALUES(?, ?)";
  EXPECT_FALSE(object_->Parametrized_ExecSQL("SELECT ?", "x", nullptr));
  EXPECT_FALSE(object_->Parametrized_ExecSQL("nonsense", nullptr));
  EXPECT_FALSE(object_->Parametrized_ExecSQL(insert, "1", nullptr));
  EXPECT_EQ(object_->last_rc, SQLITE_CONSTRAINT);
  sqlite3_limit(object_->db, SQLITE_LIMIT_LENGTH, 100);
  EXPECT_FALSE(object_->Parametrized_ExecSQL(insert, std::string(101, '1').c_str(), nullptr));
  EXPECT_TRUE(object_->Parametrized_ExecSQL(insert, "7", "it's", "more", nullptr));
  EXPECT_TRUE(object_->Parametrized_ExecSQL(insert, nullptr));
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

// With the sequence's query behind each text, on a copy of the file.
TEST_F(Sqlite, SequencesGiveWhatTheBareInterfaceGives) {
  const std::string kLong(300, 'n');
  const std::string rest = "(id INTEGER PRIMARY KEY AUTOINCREMENT);";
  ASSERT_TRUE(object_->ExecSQL(("CREATE TABLE [it's]" + rest + "CREATE TABLE " + kLong + rest +
                                "INSERT INTO t(v) VALUES('first')")
                                   .c_str()));
  const std::tuple<std::string, std::string, int> kRows[] = {
      {"INSERT INTO t(v) VALUES('a'); INSERT INTO t(v) VALUES('b');;", "t", 3},
      {"INSERT INTO t(v) VALUES('a') RETURNING v, id AS \"a\"\"b\"", "t", -1},
      {"SELECT 7 AS seq UNION ALL SELECT NULL", "t", 7},
      {"SELECT 7 AS seq WHERE 0", "t", 1},
      {"DELETE FROM t; SELECT * FROM t", "t", 1},
      {"BEGIN; INSERT INTO t(v) VALUES('a'); COMMIT", "t", 2},
      {"INSERT INTO t(v) VALUES('a') -- and", "t", -1},
      {"INSERT INTO [it's] VALUES(NULL)", "it''s", 1},
      {"INSERT INTO " + kLong + " VALUES(41)", kLong, 41},
      {"", "missing", -1},
  };
  const std::string fresh = test::read_file(path_), twin = folder_.file("twin.db");
  for (auto [sql, name, sequence] : kRows) {
    test::write_file(path_, fresh);
    test::write_file(twin, fresh);
    ASSERT_TRUE(object_->openDatabase(path_.c_str()));
    const test::BareSqlite bare(twin);
    EXPECT_EQ(object_->ExecSQL(sql.c_str(), name.data()), sequence) << sql;
    const auto expected =
        bare.query(sql + "; SELECT seq FROM sqlite_sequence WHERE name='" + name + "'");
    EXPECT_EQ(object_->db != nullptr, expected.has_value()) << sql;
    EXPECT_TRUE(!expected || table() == *expected) << sql;
    EXPECT_EQ(test::BareSqlite(path_).query("SELECT * FROM t"), bare.query("SELECT * FROM t"));
  }
  char attack[] = "x'; DROP TABLE t; SELECT '1";
  ASSERT_TRUE(object_->openDatabase(path_.c_str()));
  EXPECT_EQ(object_->ExecSQL("INSERT INTO t(v) VALUES('a')", attack), -1);
  EXPECT_EQ(object_->db, nullptr);
  EXPECT_EQ(test::BareSqlite(path_).query("SELECT v FROM t")->rows, 2);
}

// The second statement meets a lock on another file; the first one has taken effect by then.
TEST_F(Sqlite, ALockOf50MillisecondsIsWaitedOutAndAStatementThatRanIsNotRunAgain) {
  const test::BareSqlite holder(folder_.file("two.db"));
  ASSERT_EQ(holder.exec("CREATE TABLE u(w); BEGIN IMMEDIATE"), SQLITE_OK);
  ASSERT_TRUE(object_->ExecSQL(("ATTACH '" + folder_.file("two.db") + "' AS two").c_str()));
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(50);
  Log expected;
  on_pause = [&](unsigned pause_us) {
    expected.push_back(busy_line(expected.size()));
    EXPECT_EQ(pause_us, 10U);
    holder.exec(std::chrono::steady_clock::now() >= end ? "COMMIT" : "");
  };
  EXPECT_EQ(object_->ExecSQL("INSERT INTO t(v) VALUES('a'); INSERT INTO two.u VALUES(1)", t_), 1);
  EXPECT_GT(expected.size(), 1U);
  EXPECT_EQ(test::take_debug_log(), expected);
  EXPECT_EQ(holder.query("SELECT * FROM u")->rows, 1);
  on_pause = [](unsigned) {};
}

TEST_F(Sqlite, ExhaustedRetriesCountAsSuccess) {
  const test::BareSqlite holder(path_);
  ASSERT_EQ(holder.exec("BEGIN EXCLUSIVE"), 0);
  const std::function<bool()> kOperations[] = {
      [&] { return object_->ExecSQL("DELETE FROM t") && object_->last_rc == SQLITE_BUSY; },
      [&] { return object_->Parametrized_ExecSQL("DELETE FROM t", nullptr); },
      [&] {
        CSqlite fresh(path_.c_str());  // which has to read the schema first
        return fresh.openDatabase(nullptr) && fresh.Parametrized_ExecSQL("DELETE FROM t", nullptr);
      },
      [&] { return object_->QuerySQL("SELECT * FROM t") && object_->QTotalRecords() == 0; },
      [&] { return object_->ExecSQL("DELETE FROM t", t_) == -1; },
  };
  for (const auto& operation : kOperations) {
    EXPECT_TRUE(operation() && object_->db != nullptr);
    const Log log = test::take_debug_log();
    ASSERT_EQ(log.size(), 100'000U);
    EXPECT_EQ(log.back(), busy_line(99'999));
  }
}
