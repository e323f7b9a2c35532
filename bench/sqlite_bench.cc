// CSqlite against SQLite's C interface: the same query on the same file, and the same values read
// from its result.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "bench/ratio.h"
#include "bench/temporary_directory.h"
#include "orvaneip.h"

namespace {

using bench::require;

constexpr int kRows = 1000;
constexpr char kQuery[] = "SELECT id, vault_id, name, last_recv_time, enable FROM device";

// A table like that of a device list, in a temporary file.
class SampleTable {
 public:
  SampleTable() {
    CSqlite db(nullptr);
    const std::string rows =
        "CREATE TABLE device(id INTEGER PRIMARY KEY, vault_id, name, last_recv_time, enable);"
        "WITH RECURSIVE n(i) AS (VALUES(0) UNION ALL SELECT i + 1 FROM n LIMIT " +
        std::to_string(kRows) +
        ") INSERT INTO device SELECT i, 'ID' || hex(randomblob(16)), 'Till ' || i, "
        "1700000000000 + i, i % 2 FROM n";
    require(db.openDatabase(file().c_str()) && db.ExecSQL(rows.c_str()), "filling the table");
  }
  std::string file() const { return directory_.file("sample.db"); }

 private:
  bench::TemporaryDirectory directory_;
};

const std::string& sample_file() {
  static const SampleTable table;
  static const std::string file = table.file();
  return file;
}

// Depends on every value that was read, so that none can be left out.
struct Digest {
  long number = 0;
  unsigned long text = 0;
  bool operator==(const Digest&) const = default;

  void add(long value) { number += value; }
  void add(const char* value) { text += static_cast<unsigned char>(value[5]); }
};

// Reads the values of the current result with the getters, from the first row on.
Digest read_with_getters(CSqlite& db) {
  Digest digest;
  char vault_id[64];
  char name[64];
  int id = 0;
  int enable = 0;
  long last_recv_time = 0;
  for (db.QReset(); !db.QEof(); db.QNext()) {
    require(db.QGetIntegerByName("id", &id) && db.QGetStringByName("vault_id", vault_id) &&
                db.QGetStringByName("name", name) &&
                db.QGetLongByName("last_recv_time", &last_recv_time) &&
                db.QGetIntegerByName("enable", &enable),
            "getters");
    digest.add(id);
    digest.add(vault_id);
    digest.add(name);
    digest.add(last_recv_time);
    digest.add(enable);
  }
  return digest;
}

void copy(char* buffer, const char* text) { std::memcpy(buffer, text, std::strlen(text) + 1); }

// Reads the same values by hand: the number of each column is known, nothing is looked up or
// checked.
Digest read_by_hand(char** table, int rows, int columns) {
  Digest digest;
  char vault_id[64];
  char name[64];
  char** row = table + columns;
  for (int i = 0; i < rows; ++i, row += columns) {
    digest.add(std::atoi(row[0]));
    copy(vault_id, row[1]);
    copy(name, row[2]);
    benchmark::DoNotOptimize(vault_id);
    benchmark::DoNotOptimize(name);
    digest.add(vault_id);
    digest.add(name);
    digest.add(std::atol(row[3]));
    digest.add(std::atoi(row[4]));
  }
  return digest;
}

class BareTable {
 public:
  BareTable() { require(sqlite3_open(sample_file().c_str(), &db_) == SQLITE_OK, "opening"); }
  ~BareTable() {
    sqlite3_free_table(table_);
    sqlite3_close(db_);
  }
  BareTable(const BareTable&) = delete;
  BareTable& operator=(const BareTable&) = delete;

  void query() {
    sqlite3_free_table(table_);
    require(sqlite3_get_table(db_, kQuery, &table_, &rows_, &columns_, nullptr) == SQLITE_OK,
            "bare query");
  }
  Digest read() const { return read_by_hand(table_, rows_, columns_); }

 private:
  sqlite3* db_ = nullptr;
  char** table_ = nullptr;
  int rows_ = 0;
  int columns_ = 0;
};

class OpenSqlite : public CSqlite {
 public:
  OpenSqlite() : CSqlite(nullptr) { require(openDatabase(sample_file().c_str()), "opening"); }
  void query() { require(QuerySQL(kQuery) && QTotalRecords() == kRows, "query"); }
  Digest read() { return read_with_getters(*this); }
};

void check_same_values() {
  BareTable bare;
  OpenSqlite ours;
  bare.query();
  ours.query();
  require(bare.read() == ours.read() && bare.read() == read_by_hand(ours.result_table, kRows, 5),
          "values of the result");
}

template <typename Source>
void query(benchmark::State& state) {
  check_same_values();
  Source source;
  for (auto _ : state) {
    source.query();
  }
}

template <typename Source>
void query_and_read(benchmark::State& state) {
  check_same_values();
  Source source;
  for (auto _ : state) {
    source.query();
    benchmark::DoNotOptimize(source.read());
  }
}

template <typename Source>
void read_again(benchmark::State& state) {
  check_same_values();
  Source source;
  source.query();
  for (auto _ : state) {
    benchmark::DoNotOptimize(source.read());
  }
}

void sqlite_get_table(benchmark::State& state) { query<BareTable>(state); }
void sqlite_query(benchmark::State& state) { query<OpenSqlite>(state); }
void sqlite_get_table_and_read(benchmark::State& state) { query_and_read<BareTable>(state); }
void sqlite_query_and_read(benchmark::State& state) { query_and_read<OpenSqlite>(state); }
void sqlite_read_by_hand(benchmark::State& state) { read_again<BareTable>(state); }
void sqlite_read_with_getters(benchmark::State& state) { read_again<OpenSqlite>(state); }

BENCHMARK(sqlite_get_table)->Unit(benchmark::kMicrosecond);
BENCHMARK(sqlite_query)->Unit(benchmark::kMicrosecond);
BENCHMARK(sqlite_get_table_and_read)->Unit(benchmark::kMicrosecond);
BENCHMARK(sqlite_query_and_read)->Unit(benchmark::kMicrosecond);
BENCHMARK(sqlite_read_by_hand)->Unit(benchmark::kMicrosecond);
BENCHMARK(sqlite_read_with_getters)->Unit(benchmark::kMicrosecond);

const bool kDeclared = [] {
  bench::expect_ratio("sqlite_query", "sqlite_get_table", 1.05);
  bench::expect_ratio("sqlite_query_and_read", "sqlite_get_table_and_read", 1.2);
  // Without the query: the cost of finding the column of each value by its name.
  bench::expect_ratio("sqlite_read_with_getters", "sqlite_read_by_hand", 2.0);
  return true;
}();

}  // namespace
