#include "platform/event_service.h"

#include <soci/soci.h>

#include "base/failure.h"
#include "platform/embedded/vault/sqlite/sqlite_engine.h"
#include "platform/embedded/vault/run_statement.h"
#include "platform/embedded/vault/vault_location.h"
#include "platform/embedded/vault/transaction.h"
#include "platform/log_sinks.h"

namespace {

namespace engine = orvaneplatform::sqlite_engine;
using orvaneplatform::run_statement;

// The names are stored in files, and other programs insert into the table: they must not change.
constexpr char kCreateTable[] =
    "CREATE TABLE IF NOT EXISTS active_event (event_id TEXT PRIMARY KEY)";

void report(const std::string& path, const std::string& reason) {
  orvane_log_debug("[events] %s: %s", path.c_str(), reason.c_str());
}

bool remove_from(soci::session& sql, const std::string& event_id) {
  engine::prepare_empty(sql);
  orvaneplatform::WriteTransaction transaction(sql);
  run_statement(sql, kCreateTable);
  const bool removed = run_statement(sql, "DELETE FROM active_event WHERE event_id = :event_id",
                                     soci::use(event_id)) > 0;
  transaction.commit();
  return removed;
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface has it so
int aevt_remove_event(std::string event_id) {
  const std::string path = orvaneplatform::event_file_path();
  try {
    orvaneplatform::create_vault_file(path);
    engine::LockWait wait;
    soci::session sql;
    engine::open(sql, path, wait);
    return remove_from(sql, event_id) ? 1 : 0;
  } catch (const base::Failure& failure) {
    report(path, failure.reason());
  } catch (const soci::soci_error& error) {
    report(path, error.get_error_message());
  }
  return 0;
}
