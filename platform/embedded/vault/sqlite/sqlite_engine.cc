#include "platform/embedded/vault/sqlite/sqlite_engine.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>

#include "base/failure.h"
#include "platform/embedded/vault/sqlite/sqlite_errors.h"
#include "platform/vault_database.h"

namespace orvaneplatform {
namespace {

// Stored in the file's header: "ORVN", and "ORV" with the schema version in the last byte, so that
// one look shows whose file it is and which version. Must not change.
constexpr int kApplicationId = 0x4F52564E;
constexpr int kVersionMark = 0x4F525600;
constexpr int kVersionMask = 0xFF;

std::string data_source_limit(int data_sources) {
  return "CREATE TRIGGER data_source_limit BEFORE INSERT ON data_source "
         "WHEN (SELECT count(*) FROM data_source) >= " +
         std::to_string(data_sources) + " BEGIN SELECT RAISE(ABORT, '" + kVaultFullMessage +
         "'); END";
}

class SqliteRow : public Row {
 public:
  explicit SqliteRow(SQLite::Statement& statement) : statement_(statement) {}
  std::int64_t integer(int column) const override {
    return statement_.getColumn(column).getInt64();
  }
  std::string text(int column) const override { return statement_.getColumn(column).getString(); }

 private:
  SQLite::Statement& statement_;
};

// Ends the run of a statement, whether or not it failed.
class Reset {
 public:
  explicit Reset(SQLite::Statement& statement) : statement_(statement) {}
  ~Reset() { statement_.tryReset(); }
  Reset(const Reset&) = delete;
  Reset& operator=(const Reset&) = delete;

 private:
  SQLite::Statement& statement_;
};

void bind_values(SQLite::Statement& prepared, const std::vector<Value>& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const int index = static_cast<int>(i) + 1;
    if (const auto* number = std::get_if<std::int64_t>(&values[i])) {
      prepared.bind(index, *number);
    } else {
      prepared.bindNoCopy(index, *std::get<const std::string*>(values[i]));
    }
  }
}

SQLite::Database open_database(const std::string& path) {
  try {
    return {path, SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX};
  } catch (const SQLite::Exception& error) {
    throw failure_of(error, nullptr, path);
  }
}

// What SQLite creates by itself for key columns, and when an administrator runs ANALYZE.
bool is_of_sqlite(const std::string& sql) {
  return sql == "CREATE TABLE sqlite_sequence(name,seq)" ||
         sql.starts_with("CREATE TABLE sqlite_stat");
}

}  // namespace

template <typename Work>
auto SqliteEngine::guarded(Work work) {
  try {
    return work();
  } catch (const SQLite::Exception& error) {
    throw failure_of(error, database_.getHandle(), name_);
  }
}

SqliteEngine::SqliteEngine(const std::string& path) : name_(path), database_(open_database(path)) {
  configure();
}

// By default the connection that closes last moves the content of the write-ahead log into the
// database and removes the log, and the next one creates it again: a third of the cost of a short
// call. Here the log file stays, and only a connection that has written empties it.
//
// The rest is for files that are not trusted: no view, no function of the schema that has side
// effects, no write to SQLite's own tables, no text that exhausts the memory.
void SqliteEngine::configure() {
  sqlite3* const handle = database_.getHandle();
  int enabled = 1;
  sqlite3_busy_handler(handle, wait_for_lock, this);
  sqlite3_file_control(handle, "main", SQLITE_FCNTL_PERSIST_WAL, &enabled);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, kMaxVaultTextBytes);
}

// Called when another connection holds the lock, after `waits` waits for the same lock. 0 gives up.
int SqliteEngine::wait_for_lock(void* engine, int waits) {
  LockWait& wait = static_cast<SqliteEngine*>(engine)->lock_wait_;
  if (waits == 0) {
    wait = LockWait();
  }
  return wait.pause() ? 1 : 0;
}

const Dialect& SqliteEngine::dialect() const {
  static constexpr Dialect kDialect = {"INTEGER PRIMARY KEY AUTOINCREMENT", data_source_limit};
  return kDialect;
}

SQLite::Statement& SqliteEngine::prepared(const std::string& sql) {
  const auto found = prepared_.find(sql);
  return found != prepared_.end() ? found->second
                                  : prepared_.try_emplace(sql, database_, sql).first->second;
}

void SqliteEngine::execute(const char* sql) {
  guarded([&] { database_.exec(sql); });
}

int SqliteEngine::integer_pragma(const char* name) {
  return guarded([&] { return database_.execAndGet(std::string("PRAGMA ") + name).getInt(); });
}

// 0 when it is not a vault database. Version and tables are stored in one transaction.
int SqliteEngine::vault_version() {
  const int marked = integer_pragma("user_version");
  const bool is_marked = (marked & ~kVersionMask) == kVersionMark &&
                         integer_pragma("application_id") == kApplicationId;
  return is_marked ? marked & kVersionMask : 0;
}

bool SqliteEngine::is_empty() {
  const int tables =
      guarded([&] { return database_.execAndGet("SELECT count(*) FROM sqlite_master").getInt(); });
  return tables == 0 && integer_pragma("user_version") == 0 &&
         integer_pragma("application_id") == 0;
}

int SqliteEngine::schema_version() {
  const int version = vault_version();
  if (version == 0 && !is_empty()) {
    throw base::Failure(name_, "a database, but not a vault database",
                        metadata_vault::kVaultDamaged);
  }
  return version;
}

// SQLite stores the text of each statement as it was given. The entries without a text are its
// own indexes of unique columns.
void SqliteEngine::require_schema(std::span<const std::string> statements) {
  const auto fail = [this](const std::string& entry) {
    throw base::Failure(name_, "its schema is not the expected one: " + entry,
                        metadata_vault::kVaultDamaged);
  };
  std::size_t found = 0;
  guarded([&] {
    SQLite::Statement& entries =
        prepared("SELECT name, sql FROM sqlite_master WHERE sql IS NOT NULL OR type <> 'index'");
    const Reset reset(entries);
    while (entries.executeStep()) {
      const std::string name = entries.getColumn(0).getString();
      const std::string sql = entries.getColumn(1).getString();
      const bool is_ours = std::find(statements.begin(), statements.end(), sql) != statements.end();
      found += is_ours ? 1 : 0;
      if (!is_ours && !is_of_sqlite(sql)) {
        fail(name);
      }
    }
  });
  if (found != statements.size()) {
    fail("a table or index is missing");
  }
}

void SqliteEngine::prepare_empty() {
  // The change of the journal needs the file alone and does not wait for it by itself.
  LockWait wait;
  for (;;) {
    try {
      execute("PRAGMA journal_mode = WAL");
      return;
    } catch (const base::Failure& failure) {
      if (failure.status() != metadata_vault::kVaultBusy || !wait.pause()) {
        throw;
      }
    }
  }
}

void SqliteEngine::begin_read() { execute("BEGIN"); }

// Once a connection: a commit is synced, and the connection empties the log when it closes last.
void SqliteEngine::prepare_to_write() {
  if (!is_ready_to_write_) {
    execute("PRAGMA synchronous = FULL; PRAGMA journal_size_limit = 0");
    sqlite3_db_config(database_.getHandle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
    is_ready_to_write_ = true;
  }
}

void SqliteEngine::begin_write() {
  prepare_to_write();
  execute("BEGIN IMMEDIATE");
}

void SqliteEngine::queue(const orvaneplatform::Statement& statement) {
  guarded([&] {
    SQLite::Statement& running = prepared(statement.sql);
    const Reset reset(running);
    bind_values(running, statement.values);
    const SqliteRow row(running);
    while (running.executeStep()) {
      if (statement.on_row) {
        statement.on_row(row);
      }
    }
    if (statement.changed_rows != nullptr) {
      *statement.changed_rows = database_.getChanges();
    }
  });
}

void SqliteEngine::set_schema_version(int version) {
  execute(("PRAGMA application_id = " + std::to_string(kApplicationId)).c_str());
  execute(("PRAGMA user_version = " + std::to_string(kVersionMark + version)).c_str());
}

void SqliteEngine::commit() { execute("COMMIT"); }

// SQLite has rolled back by itself after some errors.
void SqliteEngine::roll_back() noexcept { database_.tryExec("ROLLBACK"); }

}  // namespace orvaneplatform
