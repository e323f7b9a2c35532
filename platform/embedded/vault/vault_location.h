// Where the vault database is.
#pragma once

#include <string>

namespace orvaneplatform {

enum class VaultKind { kSqlite, kPostgresql };

struct VaultLocation {
  VaultKind kind;
  std::string name;  // the file's path, or the URI of a server, for which no engine is built in
};

// Returns the location that a setting names: kDefaultVaultPath (base/fixed_paths.h) when it is
// empty, a path, "sqlite:///PATH" with an absolute path, or "postgresql://...". Throws
// base::Failure: kVaultUnsupported for another kind of URI, kVaultUnreachable for a path that ends
// in "/".
VaultLocation parse_vault_location(const std::string& setting);

// Returns the location that the environment variable ORVANE_VAULT names.
VaultLocation vault_location();

}  // namespace orvaneplatform
