#include "platform/embedded/vault/vault_schema.h"

#include <iterator>

#include "base/failure.h"
#include "platform/embedded/vault/transaction.h"
#include "platform/vault_database.h"

namespace orvaneplatform {
namespace {

using Statements = std::vector<std::string>;

// Names of tables and columns are stored: they must not change, and neither may a statement of a
// version that was released, since stored schemas are compared with them. "index" is a keyword of
// SQL, hence list_index. Channels and filters may be stored for a vault_id without a data source.
Statements version_1(const Dialect& dialect) {
  const std::string key = "record_id " + std::string(dialect.key_column);
  return {
      "CREATE TABLE data_source (" + key +
          ", vault_id TEXT NOT NULL UNIQUE, type TEXT NOT NULL, vault_name TEXT NOT NULL,"
          " enable INTEGER NOT NULL, list_index INTEGER NOT NULL, description TEXT NOT NULL,"
          " last_recv_time BIGINT NOT NULL)",
      ("CREATE UNIQUE INDEX data_source_by_index ON data_source (list_index)"
       " WHERE list_index >= 0"),
      dialect.data_source_limit(metadata_vault::kMaxDataSources),
      "CREATE TABLE channel (" + key +
          ", vault_id TEXT NOT NULL, channel_index INTEGER NOT NULL, guid TEXT NOT NULL,"
          " name TEXT NOT NULL)",
      "CREATE INDEX channel_by_vault ON channel (vault_id, channel_index, record_id)",
      "CREATE INDEX channel_by_guid ON channel (guid)",
      "CREATE TABLE filter (" + key +
          ", vault_id TEXT NOT NULL, type INTEGER NOT NULL, target TEXT NOT NULL,"
          " result TEXT NOT NULL, name TEXT NOT NULL)",
      "CREATE INDEX filter_by_vault ON filter (vault_id, record_id)",
      "CREATE TABLE metadata (" + key +
          ", metadata_id TEXT NOT NULL UNIQUE, vault_id TEXT NOT NULL, content TEXT NOT NULL)",
  };
}

Statements version_2(const Dialect& /*dialect*/) {
  return {"CREATE TABLE active_event (event_id TEXT NOT NULL PRIMARY KEY)"};
}

// Step i brings version i to version i + 1.
constexpr Statements (*kSteps[])(const Dialect&) = {version_1, version_2};
static_assert(std::size(kSteps) == kSchemaVersion);

Statements schema_of(int version, const Dialect& dialect) {
  Statements schema;
  for (int step = 0; step < version; ++step) {
    Statements made = kSteps[step](dialect);
    schema.insert(schema.end(), std::make_move_iterator(made.begin()),
                  std::make_move_iterator(made.end()));
  }
  return schema;
}

// In a transaction, so that version and tables are of the same moment.
int check_stored_schema(Engine& engine) {
  const int version = engine.schema_version();
  if (version > kSchemaVersion) {
    throw base::Failure(engine.name(), "schema version " + std::to_string(version) + " is newer",
                        metadata_vault::kVaultNewerSchema);
  }
  if (version > 0) {
    engine.require_schema(schema_of(version, engine.dialect()));
  }
  return version;
}

}  // namespace

int check_schema(Engine& engine) {
  ReadTransaction transaction(engine);
  const int version = check_stored_schema(engine);
  transaction.commit();
  return version;
}

void upgrade_schema(Engine& engine, int version) {
  if (version == 0) {
    engine.prepare_empty();
  }
  WriteTransaction transaction(engine);
  // Another process may have upgraded it before this one had the lock.
  for (version = check_stored_schema(engine); version < kSchemaVersion; ++version) {
    for (const std::string& statement : kSteps[version](engine.dialect())) {
      engine.queue({statement});
    }
    engine.set_schema_version(version + 1);
  }
  transaction.commit();
}

}  // namespace orvaneplatform
