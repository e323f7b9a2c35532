#include "platform/embedded/vault/vault_schema.h"

#include <string>

#include "platform/embedded/vault/run_statement.h"
#include "platform/embedded/vault/sqlite/sqlite_engine.h"
#include "platform/embedded/vault/transaction.h"
#include "platform/vault_database.h"

namespace orvaneplatform {
namespace {

// Names of tables and columns are stored in files: they must not change. The column list_index is
// not named "index" because that is a keyword of SQL. Channels and filters may be stored for a
// vault_id without a data source.
void create_version_1(soci::session& sql) {
  const std::string key = std::string("record_id ") + sqlite_engine::kKeyColumn;
  run_statement(
      sql, "CREATE TABLE data_source (" + key +
               ", vault_id TEXT NOT NULL UNIQUE, type TEXT NOT NULL, vault_name TEXT NOT NULL,"
               " enable INTEGER NOT NULL, list_index INTEGER NOT NULL, description TEXT NOT NULL,"
               " last_recv_time BIGINT NOT NULL)");
  run_statement(sql,
                "CREATE UNIQUE INDEX data_source_by_index ON data_source (list_index)"
                " WHERE list_index >= 0");
  run_statement(sql, sqlite_engine::data_source_limit(metadata_vault::kMaxDataSources));
  run_statement(sql,
                "CREATE TABLE channel (" + key +
                    ", vault_id TEXT NOT NULL, channel_index INTEGER NOT NULL, guid TEXT NOT NULL,"
                    " name TEXT NOT NULL)");
  run_statement(sql,
                "CREATE INDEX channel_by_vault ON channel (vault_id, channel_index, record_id)");
  run_statement(sql, "CREATE INDEX channel_by_guid ON channel (guid)");
  run_statement(sql, "CREATE TABLE filter (" + key +
                         ", vault_id TEXT NOT NULL, type INTEGER NOT NULL, target TEXT NOT NULL,"
                         " result TEXT NOT NULL, name TEXT NOT NULL)");
  run_statement(sql, "CREATE INDEX filter_by_vault ON filter (vault_id, record_id)");
  run_statement(
      sql,
      "CREATE TABLE metadata (" + key +
          ", metadata_id TEXT NOT NULL UNIQUE, vault_id TEXT NOT NULL, content TEXT NOT NULL)");
}

// Step i upgrades version i to version i + 1.
constexpr void (*kSteps[])(soci::session&) = {create_version_1};
static_assert(std::size(kSteps) == kSchemaVersion);

}  // namespace

void upgrade_schema(soci::session& sql) {
  if (sqlite_engine::schema_version(sql) == 0) {
    sqlite_engine::prepare_empty(sql);
  }
  WriteTransaction transaction(sql);
  // Read again under the lock: another process may have upgraded the schema meanwhile.
  for (int version = sqlite_engine::schema_version(sql); version < kSchemaVersion; ++version) {
    kSteps[version](sql);
    sqlite_engine::set_schema_version(sql, version + 1);
  }
  transaction.commit();
}

}  // namespace orvaneplatform
