// Where the vault database is.
#pragma once

#include <optional>
#include <string>

namespace orvaneplatform {

// The file of the vault database, or nothing when ORVANE_VAULT names a server
// ("postgresql://..."), which is not built in.
std::optional<std::string> vault_file_path();

// Creates the file (empty, mode 0600) with its folders when it is missing, durably. 0, or the errno
// of what failed.
int create_vault_file(const std::string& path);

}  // namespace orvaneplatform
