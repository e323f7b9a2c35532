#include "platform/embedded/vault/connection_state.h"
#include "platform/vault_database.h"

CMetadata::CMetadata() = default;
CMetadata::~CMetadata() = default;

int CMetadata::remove_metadata(std::string key) {
  return orvaneplatform::change_vault(
      state_, __func__, metadata_vault::kVaultNotFound, [&](orvaneplatform::Engine& engine) {
        if (run(engine, {"DELETE FROM metadata WHERE metadata_id = $1", {&key}}) == 0) {
          throw base::Failure("", "no such record", metadata_vault::kVaultNotFound);
        }
      });
}
