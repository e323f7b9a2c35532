#include "platform/event_service.h"

#include <soci/soci.h>

#include "base/failure.h"
#include "platform/embedded/vault/run_statement.h"
#include "platform/embedded/vault/sqlite/sqlite_engine.h"
#include "platform/embedded/vault/transaction.h"
#include "platform/embedded/vault/vault_location.h"
#include "platform/log_sinks.h"

namespace {

namespace engine = orvaneplatform::sqlite_engine;
using orvaneplatform::run_statement;

// The names are stored in files, and other programs insert into the table: they must not change.
constexpr char kCreateTable[] =
    "CREATE TABLE IF NOT EXISTS active_event (event_id TEXT PRIMARY KEY)";

bool remove_row(soci::session& sql, const std::string& event_id) {
  engine::prepare_empty(sql);
  orvaneplatform::WriteTransaction transaction(sql);
  run_statement(sql, kCreateTable);
  const bool removed = run_statement(sql, "DELETE FROM active_event WHERE event_id = :event_id",
                                     soci::use(event_id)) > 0;
  transaction.commit();
  return removed;
}

// Throws base::Failure.
bool remove_event(const std::string& path, const std::string& event_id) {
  orvaneplatform::create_database_file(path);
  engine::LockWait wait;
  soci::session sql;
  bool removed = false;
  engine::throw_failures(sql, path, [&] {
    engine::open(sql, path, wait);
    removed = remove_row(sql, event_id);
  });
  return removed;
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface has it so
int aevt_remove_event(std::string event_id) {
  try {
    return remove_event(orvaneplatform::event_file_path(), event_id) ? 1 : 0;
  } catch (const base::Failure& failure) {
    orvane_log_debug("[events] %s", failure.what());
    return 0;
  }
}
