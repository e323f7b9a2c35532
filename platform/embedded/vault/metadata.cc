#include "platform/embedded/vault/run_statement.h"
#include "platform/embedded/vault/connection_state.h"
#include "platform/vault_database.h"

CMetadata::CMetadata() = default;
CMetadata::~CMetadata() = default;

int CMetadata::remove_metadata(std::string key) {
  using namespace metadata_vault;
  return orvaneplatform::write_vault(state_, __func__, [&](soci::session& sql) {
    const long long removed = orvaneplatform::run_statement(
        sql, "DELETE FROM metadata WHERE metadata_id = :key", soci::use(key));
    return removed > 0 ? kVaultOk : kVaultNotFound;
  });
}
