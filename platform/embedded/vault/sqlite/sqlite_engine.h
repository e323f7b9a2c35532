// SQLite under the vault database: everything in which it differs from another SQL engine.
#pragma once

#include <soci/soci.h>

#include <chrono>
#include <string>

#include "platform/vault_status.h"

namespace orvaneplatform::sqlite_engine {

// How long a writer waits for another one. Readers do not wait.
inline constexpr int kLockWaitMs = 10'000;

// A connection's wait for the lock of another one.
struct LockWait {
  std::chrono::steady_clock::time_point deadline;
};

// Opens the file, which must exist. `wait` has to live as long as the session.
void open(soci::session& sql, const std::string& path, LockWait& wait);

// The version of the stored schema; 0 when there is none. Throws when the file is no vault
// database.
int schema_version(soci::session& sql);

// Makes an empty database ready for its first schema: from then on a write-ahead log is kept beside
// it. Call before begin_write.
void prepare_empty(soci::session& sql);

void set_schema_version(soci::session& sql, int version);

// Begins a transaction that holds the write lock from its start, and whose commit is durable.
void begin_write(soci::session& sql);

// The column type of a key that the database gives out.
extern const char kKeyColumn[];

// The statement that makes the database itself refuse a data source too many.
std::string data_source_limit(int limit);

// What the error that an operation on `sql` has just thrown means.
metadata_vault::VaultStatus status_of(soci::session& sql, const soci::soci_error& error);

}  // namespace orvaneplatform::sqlite_engine
