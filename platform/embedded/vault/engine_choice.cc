#include "platform/embedded/vault/engine_choice.h"

#include "base/failure.h"
#include "platform/embedded/vault/sqlite/database_file.h"
#include "platform/embedded/vault/sqlite/sqlite_engine.h"
#include "platform/vault_status.h"

namespace orvaneplatform {
namespace {

void require_sqlite(const VaultLocation& location) {
  if (location.kind != VaultKind::kSqlite) {
    throw base::Failure("", "PostgreSQL is not built in", metadata_vault::kVaultUnsupported);
  }
}

}  // namespace

std::unique_ptr<Engine> open_engine(const VaultLocation& location) {
  require_sqlite(location);
  return database_file_exists(location.name) ? std::make_unique<SqliteEngine>(location.name)
                                             : nullptr;
}

void create_database(const VaultLocation& location) {
  require_sqlite(location);
  create_database_file(location.name);
}

}  // namespace orvaneplatform
