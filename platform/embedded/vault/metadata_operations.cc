// CMetadata on the embedded vault database.
#include "platform/embedded/vault/connection_state.h"
#include "platform/embedded/vault/run_statement.h"
#include "platform/vault_database.h"

CMetadata::CMetadata() = default;
CMetadata::~CMetadata() = default;

int CMetadata::remove_metadata(std::string key) {
  using namespace orvaneplatform;
  return write_vault(state_, __func__, [&](soci::session& sql) {
    require_record(
        run_statement(sql, "DELETE FROM metadata WHERE metadata_id = :key", soci::use(key)));
  });
}
