#include "platform/embedded/event/event_file.h"

#include <sys/stat.h>

#include <filesystem>

#include "base/directory.h"
#include "base/failure.h"
#include "base/fixed_paths.h"
#include "platform/embedded/vault/sqlite/sqlite_engine.h"
#include "platform/embedded/vault/transaction.h"
#include "platform/embedded/vault/vault_location.h"
#include "platform/log_sinks.h"
#include "platform/vault_status.h"

namespace orvaneplatform {
namespace {

constexpr char kEventTable[] = "CREATE TABLE active_event (event_id TEXT PRIMARY KEY)";

// In the vault's directory, or in the default one when the vault is on a server.
std::string event_file_path() {
  const VaultLocation location = vault_location();
  const std::filesystem::path vault =
      location.kind == VaultKind::kSqlite ? location.name : base::kDefaultVaultPath;
  const char* name = vault.filename() == kEventFileName ? kOtherEventFileName : kEventFileName;
  return base::parent_directory(vault) / name;
}

std::int64_t header_number(Engine& engine, const char* pragma) {
  std::int64_t number = 0;
  engine.queue({pragma, {}, [&number](const Row& row) { number = row.integer(0); }});
  engine.flush();
  return number;
}

// An event file has no application id; a file with one belongs to another program.
void require_event_file(Engine& engine) {
  if (header_number(engine, "PRAGMA application_id") != 0 ||
      header_number(engine, "PRAGMA user_version") != 0) {
    throw base::Failure(engine.name(), "a database, but not of active events",
                        metadata_vault::kVaultDamaged);
  }
  const std::string table = kEventTable;
  engine.require_schema({&table, 1});
}

std::vector<std::string> read_ids(Engine& engine) {
  std::vector<std::string> ids;
  engine.queue({"SELECT event_id FROM active_event WHERE event_id IS NOT NULL",
                {},
                [&ids](const Row& row) { ids.push_back(row.text(0)); }});
  engine.flush();
  return ids;
}

// Returns false, and logs why, when the file is not an event file or cannot be opened. Takes no
// lock that a program which inserts would have to wait for.
bool holds_events(const std::string& path) {
  try {
    SqliteEngine file(path);
    ReadTransaction transaction(file);
    require_event_file(file);
    return !read_ids(file).empty();
  } catch (const base::Failure& failure) {
    if (failure.status() != metadata_vault::kVaultDamaged &&
        failure.status() != metadata_vault::kVaultUnreachable) {
      throw;
    }
    orvane_log_debug("[events] %s", failure.what());
    return false;
  }
}

bool has_content(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0;
}

}  // namespace

void migrate_events(const std::function<void(const std::vector<std::string>& event_ids)>& store) {
  const std::string path = event_file_path();
  if (!has_content(path) || !holds_events(path)) {
    return;
  }
  SqliteEngine file(path);
  WriteTransaction transaction(file);
  require_event_file(file);
  store(read_ids(file));
  file.queue({"DELETE FROM active_event"});
  transaction.commit();
}

}  // namespace orvaneplatform
