// The active events: a table of the vault.
#include "platform/event_service.h"

#include <memory>

#include "platform/embedded/event/event_file.h"
#include "platform/embedded/vault/connection_state.h"
#include "platform/embedded/vault/vault_schema.h"
#include "platform/vault_extensions.h"

namespace {

using metadata_vault::VaultConnectionState;
using orvaneplatform::Engine;

void queue_insert(Engine& engine, const std::string& event_id) {
  engine.queue(
      {"INSERT INTO active_event (event_id) VALUES ($1) ON CONFLICT DO NOTHING", {&event_id}});
}

// Runs `work(connection)` on an open vault, after the events of the event file were moved into it.
// Returns 0 or the status of the failure, which is logged.
template <typename Work>
int with_events(const char* operation, Work work) {
  const auto state = std::make_unique<VaultConnectionState>();
  if (const auto status = state->open(); status != metadata_vault::kVaultOk) {
    return status;
  }
  return orvaneplatform::run_operation(state, operation, [&](VaultConnectionState& connection) {
    orvaneplatform::migrate_events([&](const std::vector<std::string>& event_ids) {
      orvaneplatform::write(connection, [&](Engine& engine) {
        for (const std::string& event_id : event_ids) {
          queue_insert(engine, event_id);
        }
      });
    });
    work(connection);
  });
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface has it so
int aevt_remove_event(std::string event_id) {
  bool removed = false;
  const int status = with_events(__func__, [&](VaultConnectionState& connection) {
    if (connection.version() >= orvaneplatform::kEventSchemaVersion) {
      orvaneplatform::write(connection, [&](Engine& engine) {
        removed = run(engine, {"DELETE FROM active_event WHERE event_id = $1", {&event_id}}) > 0;
      });
    }
  });
  return status == metadata_vault::kVaultOk && removed ? 1 : 0;
}

int aevt_add_event(const std::string& event_id) {
  return with_events(__func__, [&](VaultConnectionState& connection) {
    orvaneplatform::write(connection, [&](Engine& engine) { queue_insert(engine, event_id); });
  });
}

int aevt_list_events(std::vector<std::string>& event_ids) {
  return with_events(__func__, [&](VaultConnectionState& connection) {
    std::vector<std::string> found;
    orvaneplatform::read(connection, orvaneplatform::kEventSchemaVersion, [&](Engine& engine) {
      engine.queue({"SELECT event_id FROM active_event ORDER BY event_id",
                    {},
                    [&found](const orvaneplatform::Row& row) { found.push_back(row.text(0)); }});
      engine.flush();
    });
    event_ids.insert(event_ids.end(), found.begin(), found.end());
  });
}
