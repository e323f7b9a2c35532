// Where the vault database and the event database are.
#pragma once

#include <optional>
#include <string>

namespace orvaneplatform {

// The file of the vault database, or nothing when ORVANE_VAULT names a server
// ("postgresql://..."), which is not built in.
std::optional<std::string> vault_file_path();

// The file of the event database: events.db in the vault database's folder, or active_events.db
// when the vault database has that name itself; in the default folder when that is a server.
std::string event_file_path();

// Creates the database file (empty, mode 0600) with its folders when it is missing, durably. 0, or
// the errno of what failed.
int create_vault_file(const std::string& path);

}  // namespace orvaneplatform
