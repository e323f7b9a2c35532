// Where the vault database and the event database are.
#pragma once

#include <string>

namespace orvaneplatform {

// The event database, in the directory of the vault database, and its other name for a vault
// database that is itself named kEventFile. Other programs use these names: they must not change.
inline constexpr char kEventFile[] = "events.db";
inline constexpr char kOtherEventFile[] = "active_events.db";

// Mode of a new database file: its owner may read and write it.
inline constexpr unsigned int kDatabaseFileMode = 0600;

// Returns the path of the vault database. Throws base::Failure with kVaultUnsupported when
// ORVANE_VAULT names a server ("postgresql://..."), which is not built in.
std::string vault_file_path();

// Returns the path of the event database. When the vault database is on a server, that is
// kEventFile in the directory of base::kDefaultVaultPath (base/fixed_paths.h).
std::string event_file_path();

// Creates the database file at `path` (empty, mode kDatabaseFileMode) and its directories when they
// do not exist, durably. Throws base::Failure with kVaultUnreachable.
void create_database_file(const std::string& path);

}  // namespace orvaneplatform
