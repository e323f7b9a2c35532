#include "platform/embedded/vault/sqlite/sqlite_engine.h"

#include <soci/sqlite3/soci-sqlite3.h>

#include <cerrno>
#include <chrono>
#include <string_view>
#include <thread>

#include "platform/embedded/vault/run_statement.h"
#include "platform/vault_database.h"

namespace orvaneplatform::sqlite_engine {
namespace {

using namespace metadata_vault;

// Stored in the file's header: "ORVN", and "ORV" with the schema version in the last byte, so that
// one number identifies the file and its version. They must not change.
constexpr int kApplicationId = 0x4F52564E;
constexpr int kVersionMark = 0x4F525600;
constexpr int kVersionMask = 0xFF;
constexpr auto kPause = std::chrono::milliseconds(kLockPauseMs);
constexpr auto kLockWait = std::chrono::milliseconds(metadata_vault::kLockWaitMs);
// Raised by the trigger below and recognised by constraint_status. Stored in files.
constexpr char kFullMessage[] = "the vault list is full";

sqlite_api::sqlite3* handle_of(soci::session& sql) {
  auto* backend = static_cast<soci::sqlite3_session_backend*>(sql.get_backend());
  return backend != nullptr ? backend->conn_ : nullptr;
}

int int_pragma(soci::session& sql, const char* name) {
  int value = 0;
  run_statement(sql, std::string("PRAGMA ") + name, soci::into(value));
  return value;
}

// Returns 0 when it is not a vault database. Version and tables are stored in one transaction.
int vault_version(soci::session& sql) {
  const int marked = int_pragma(sql, "user_version");
  return (marked & ~kVersionMask) == kVersionMark ? marked & kVersionMask : 0;
}

bool is_empty(soci::session& sql) {
  int tables = 0;
  run_statement(sql, "SELECT count(*) FROM sqlite_master", soci::into(tables));
  return tables == 0 && int_pragma(sql, "user_version") == 0 &&
         int_pragma(sql, "application_id") == 0;
}

// SOCI accepts a path, unless it contains "=": then it expects "key=value" pairs, whose values may
// be between quotation marks.
std::string connection_string(const std::string& path) {
  if (path.find('=') == std::string::npos) {
    return path;
  }
  if (path.find('"') != std::string::npos) {
    throw soci::sqlite3_soci_error("a file name with both \"=\" and a quotation mark",
                                   SQLITE_CANTOPEN);
  }
  return "dbname=\"" + path + '"';
}

// By default the last connection that closes moves the contents of the write-ahead log into the
// database and removes the log, and the next one creates it again, which is a third of the cost of
// a short call. Here the log's file is kept, and only a connection that has written empties it.
void keep_write_ahead_log(soci::session& sql) {
  int enabled = 1;
  sqlite_api::sqlite3_file_control(handle_of(sql), "main", SQLITE_FCNTL_PERSIST_WAL, &enabled);
}

void empty_log_on_close(soci::session& sql, bool is_emptied) {
  sqlite_api::sqlite3_db_config(handle_of(sql), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE,
                                is_emptied ? 0 : 1, nullptr);
}

// A vault database has no views; a view in an untrusted file may run for ever.
void refuse_views(soci::session& sql) {
  sqlite_api::sqlite3_db_config(handle_of(sql), SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
}

VaultStatus constraint_status(std::string_view message) {
  if (message.find(kFullMessage) != std::string_view::npos) {
    return kVaultFull;
  }
  return message.find("list_index") != std::string_view::npos ? kVaultIndexTaken : kVaultIdTaken;
}

// Returns the errno of the last failure. That of a commit is kept with the file of the log, any
// other one with the connection.
int last_errno(sqlite_api::sqlite3* handle) {
  if (handle == nullptr) {
    return 0;
  }
  sqlite_api::sqlite3_file* log = nullptr;
  int error = 0;
  sqlite_api::sqlite3_file_control(handle, "main", SQLITE_FCNTL_JOURNAL_POINTER, &log);
  if (log != nullptr && log->pMethods != nullptr) {
    log->pMethods->xFileControl(log, SQLITE_FCNTL_LAST_ERRNO, &error);
  }
  return error != 0 ? error : sqlite_api::sqlite3_system_errno(handle);
}

VaultStatus io_status(sqlite_api::sqlite3* handle) {
  switch (last_errno(handle)) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return kVaultNoSpace;
    case EROFS:
      return kVaultReadOnly;
    default:
      return kVaultFailed;
  }
}

// Called by SQLite when another connection holds a lock; `pauses` counts the earlier calls for this
// lock. Returns 0 to give up.
int pause_or_give_up(void* lock_wait, int pauses) {
  auto& deadline = static_cast<LockWait*>(lock_wait)->deadline;
  const auto now = std::chrono::steady_clock::now();
  if (pauses == 0) {
    deadline = now + kLockWait;
  }
  if (now >= deadline) {
    return 0;
  }
  std::this_thread::sleep_for(kPause);
  return 1;
}

VaultStatus status_of(soci::session& sql, const soci::soci_error& error) {
  const auto* sqlite_error = dynamic_cast<const soci::sqlite3_soci_error*>(&error);
  switch (sqlite_error != nullptr ? sqlite_error->result() : SQLITE_ERROR) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      return kVaultBusy;
    case SQLITE_CONSTRAINT:
      return constraint_status(error.get_error_message());
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return kVaultReadOnly;
    case SQLITE_FULL:
      return kVaultNoSpace;
    case SQLITE_IOERR:
      return io_status(handle_of(sql));
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return kVaultDamaged;
    case SQLITE_CANTOPEN:
      return kVaultUnreachable;
    default:
      return kVaultFailed;
  }
}

bool is_busy(const soci::soci_error& error) {
  const auto* sqlite_error = dynamic_cast<const soci::sqlite3_soci_error*>(&error);
  return sqlite_error != nullptr && sqlite_error->result() == SQLITE_BUSY;
}

}  // namespace

const char kKeyColumn[] = "INTEGER PRIMARY KEY AUTOINCREMENT";

void open(soci::session& sql, const std::string& path, LockWait& wait) {
  sql.open(soci::sqlite3, connection_string(path));
  sqlite_api::sqlite3_busy_handler(handle_of(sql), pause_or_give_up, &wait);
  keep_write_ahead_log(sql);
  empty_log_on_close(sql, false);
  refuse_views(sql);
}

int schema_version(soci::session& sql) {
  int version = vault_version(sql);
  if (version <= 0 && !is_empty(sql)) {
    // Another process may have stored the first schema between the two queries.
    version = vault_version(sql);
    if (version <= 0) {
      throw soci::sqlite3_soci_error("a database, but not a vault database", SQLITE_NOTADB);
    }
  }
  return version;
}

void prepare_empty(soci::session& sql) {
  // This PRAGMA needs the file for itself alone, and it does not call the busy handler.
  const auto deadline = std::chrono::steady_clock::now() + kLockWait;
  for (;;) {
    try {
      std::string mode;
      run_statement(sql, "PRAGMA journal_mode = WAL", soci::into(mode));
      return;
    } catch (const soci::soci_error& error) {
      if (!is_busy(error) || std::chrono::steady_clock::now() >= deadline) {
        throw;
      }
    }
    std::this_thread::sleep_for(kPause);
  }
}

void set_schema_version(soci::session& sql, int version) {
  run_statement(sql, "PRAGMA application_id = " + std::to_string(kApplicationId));
  run_statement(sql, "PRAGMA user_version = " + std::to_string(kVersionMark + version));
}

void begin_write(soci::session& sql) {
  run_statement(sql, "PRAGMA synchronous = FULL");
  run_statement(sql, "PRAGMA journal_size_limit = 0");  // the size of an emptied log
  empty_log_on_close(sql, true);
  run_statement(sql, "BEGIN IMMEDIATE");
}

std::string data_source_limit(int limit) {
  return "CREATE TRIGGER data_source_limit BEFORE INSERT ON data_source "
         "WHEN (SELECT count(*) FROM data_source) >= " +
         std::to_string(limit) + " BEGIN SELECT RAISE(ABORT, '" + kFullMessage + "'); END";
}

base::Failure failure_of(soci::session& sql, const std::string& path,
                         const soci::soci_error& error) {
  return {path, error.get_error_message(), status_of(sql, error)};
}

}  // namespace orvaneplatform::sqlite_engine
