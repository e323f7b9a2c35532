#include <memory>

#include "platform/embedded/vault/connection_state.h"
#include "platform/vault_extensions.h"

namespace {

using orvaneplatform::Engine;

bool exists(Engine& engine, const std::string& vault_id) {
  bool found = false;
  engine.queue({"SELECT 1 FROM data_source WHERE vault_id = $1",
                {&vault_id},
                [&found](const orvaneplatform::Row&) { found = true; }});
  engine.flush();
  return found;
}

}  // namespace

int vault_set_last_recv_time(const std::string& vault_id, std::int64_t time_ms) {
  const auto state = std::make_unique<metadata_vault::VaultConnectionState>();
  if (const auto status = state->open(); status != metadata_vault::kVaultOk) {
    return status;
  }
  return orvaneplatform::change_vault(
      state, __func__, metadata_vault::kVaultNotFound, [&](Engine& engine) {
        if (!exists(engine, vault_id)) {
          throw base::Failure("", "no such record", metadata_vault::kVaultNotFound);
        }
        engine.queue(
            {"UPDATE data_source SET last_recv_time = $1 WHERE vault_id = $2"
             " AND last_recv_time < $3",
             {time_ms, &vault_id, time_ms}});
      });
}
