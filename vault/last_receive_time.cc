#include "vault/last_receive_time.h"

#include "foundation/result_codes.h"
#include "platform/vault_extensions.h"
#include "platform/vault_status.h"

int devcfg_set_last_recv_time(const char* vault_id, std::int64_t time_ms) {
  if (vault_id == nullptr || *vault_id == '\0') {
    return kDevcfgVaultIdMissing;
  }
  return vault_set_last_recv_time != nullptr ? vault_set_last_recv_time(vault_id, time_ms)
                                             : metadata_vault::kVaultUnsupported;
}
