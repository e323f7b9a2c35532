// Where the vault database and the event database are.
#pragma once

#include <string>

namespace orvaneplatform {

// Returns the file of the vault database. Throws base::Failure with kVaultUnsupported when
// ORVANE_VAULT names a server ("postgresql://..."), which is not built in.
std::string vault_file_path();

// Returns the file of the event database: events.db in the vault database's directory, or
// active_events.db when the vault database has that name itself; in the default directory when that
// is a server.
std::string event_file_path();

// Creates the database file (empty, mode 0600) with its directories when it is missing, durably.
// Throws base::Failure with kVaultUnreachable.
void create_vault_file(const std::string& path);

}  // namespace orvaneplatform
