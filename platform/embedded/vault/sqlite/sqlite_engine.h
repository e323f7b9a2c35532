// SQLite as the engine of the vault database: everything that differs from another SQL engine.
#pragma once

#include <soci/soci.h>

#include <chrono>
#include <string>

#include "base/failure.h"
#include "platform/vault_status.h"

namespace orvaneplatform::sqlite_engine {

// The pause between two attempts to take a lock. The wait that SQLite offers pauses for up to 100
// ms and so hardly ever meets the moment between two changes of a writer that makes many.
inline constexpr int kLockPauseMs = 2;

// The state of a connection's wait for the lock of another connection, at most kLockWaitMs
// (platform/vault_database.h).
struct LockWait {
  std::chrono::steady_clock::time_point deadline;
};

// Opens the file, which must exist. `wait` must live as long as the session.
void open(soci::session& sql, const std::string& path, LockWait& wait);

// Returns the version of the stored schema; 0 for an empty database. Throws when the file is not a
// vault database.
int schema_version(soci::session& sql);

// Prepares an empty database for its first schema: from now on it has a write-ahead log. Call it
// before begin_write.
void prepare_empty(soci::session& sql);

void set_schema_version(soci::session& sql, int version);

// Begins a transaction that takes the write lock at once and whose commit is durable.
void begin_write(soci::session& sql);

// The column type of a key that the database assigns.
extern const char kKeyColumn[];

// Returns the statement that makes the database itself refuse more than `limit` data sources.
std::string data_source_limit(int limit);

// Returns the status and the message of the error that an operation on `sql` has just thrown.
// `path`: the file, or empty.
base::Failure failure_of(soci::session& sql, const std::string& path,
                         const soci::soci_error& error);

// Calls `work`, which uses `sql`, and throws base::Failure in place of SOCI's exceptions.
template <typename Work>
void throw_failures(soci::session& sql, const std::string& path, Work work) {
  try {
    work();
  } catch (const soci::soci_error& error) {
    throw failure_of(sql, path, error);
  }
}

}  // namespace orvaneplatform::sqlite_engine
