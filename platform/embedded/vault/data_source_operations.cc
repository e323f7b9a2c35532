// CDataSource on the embedded vault database: each operation is one transaction.
#include <charconv>
#include <iterator>

#include "platform/embedded/vault/connection_state.h"
#include "platform/embedded/vault/records.h"
#include "platform/embedded/vault/run_statement.h"
#include "platform/vault_database.h"

namespace {

using namespace metadata_vault;
using orvaneplatform::require_record;
using orvaneplatform::run_statement;
using orvaneplatform::write_vault;
using soci::session;
using soci::use;

// Reads the rows that `read(sql)` returns, and appends them to `found` when it succeeds.
template <typename Record, typename Read>
int append_rows(const orvaneplatform::VaultState& state, const char* operation,
                std::vector<Record>& found, Read read) {
  std::vector<Record> rows;
  const VaultStatus status =
      orvaneplatform::read_vault(state, operation, [&](session& sql) { rows = read(sql); });
  if (status == kVaultOk) {
    found.insert(found.end(), std::make_move_iterator(rows.begin()),
                 std::make_move_iterator(rows.end()));
  }
  return status;
}

void remove_rows(session& sql, const std::string& table, const std::string& column,
                 const std::string& value) {
  run_statement(sql, "DELETE FROM " + table + " WHERE " + column + " = :value", use(value));
}

// Returns the key as a number; 0, which no record has, when `record_id` is not a number.
long long parse_key(const std::string& record_id) {
  long long key = 0;
  const char* end = record_id.data() + record_id.size();
  const auto read = std::from_chars(record_id.data(), end, key);
  return read.ec == std::errc() && read.ptr == end ? key : 0;
}

}  // namespace

CDataSource::CDataSource() = default;
CDataSource::~CDataSource() = default;

int CDataSource::query_data_source(const std::string& vault_id, const std::string& vault_name,
                                   std::vector<DataSource>& found) {
  return append_rows(state_, __func__, found, [&](session& sql) {
    const orvaneplatform::DataSourceMatch match{vault_id, vault_name};
    std::vector<DataSource> rows = orvaneplatform::read_data_sources(sql, match);
    orvaneplatform::read_lists(sql, match, rows);
    return rows;
  });
}

int CDataSource::query_data_source_sort_by_index(std::vector<DataSource>& found) {
  return append_rows(state_, __func__, found, [&](session& sql) {
    return orvaneplatform::read_data_sources(sql, {"", ""});
  });
}

int CDataSource::insert_data_source(const DataSource& data_source) {
  return write_vault(state_, __func__, [&](session& sql) {
    const int enable = data_source.enable ? 1 : 0;
    run_statement(
        sql,
        "INSERT INTO data_source (vault_id, type, vault_name, enable, list_index, description,"
        " last_recv_time) VALUES (:vault_id, :type, :vault_name, :enable, :list_index,"
        " :description, 0)",
        use(data_source.vault_id), use(data_source.type), use(data_source.vault_name), use(enable),
        use(data_source.index), use(data_source.description));
  });
}

int CDataSource::update_data_source(const DataSource& data_source) {
  return write_vault(state_, __func__, [&](session& sql) {
    const int enable = data_source.enable ? 1 : 0;
    const long long last_recv_time = data_source.last_recv_time;
    require_record(run_statement(
        sql,
        "UPDATE data_source SET type = :type, vault_name = :vault_name,"
        " enable = :enable, list_index = :list_index, description = :description,"
        " last_recv_time = :last_recv_time WHERE vault_id = :vault_id",
        use(data_source.type), use(data_source.vault_name), use(enable), use(data_source.index),
        use(data_source.description), use(last_recv_time), use(data_source.vault_id)));
  });
}

int CDataSource::remove_data_source(const DataSource& data_source) {
  return write_vault(state_, __func__, [&](session& sql) {
    const std::string& vault_id = data_source.vault_id;
    remove_rows(sql, "channel", "vault_id", vault_id);
    remove_rows(sql, "filter", "vault_id", vault_id);
    // Without such a data source the two removals are rolled back.
    require_record(
        run_statement(sql, "DELETE FROM data_source WHERE vault_id = :vault_id", use(vault_id)));
  });
}

int CDataSource::insert_channel(const Channel& channel) {
  return write_vault(state_, __func__, [&](session& sql) {
    run_statement(sql,
                  "INSERT INTO channel (vault_id, channel_index, guid, name)"
                  " VALUES (:vault_id, :channel_index, :guid, :name)",
                  use(channel.vault_id), use(channel.channel_index), use(channel.guid),
                  use(channel.name));
  });
}

int CDataSource::update_channel(const Channel& channel) {
  return write_vault(state_, __func__, [&](session& sql) {
    const long long key = parse_key(channel.record_id);
    require_record(
        run_statement(sql,
                      "UPDATE channel SET vault_id = :vault_id, channel_index = :channel_index,"
                      " guid = :guid, name = :name WHERE record_id = :record_id",
                      use(channel.vault_id), use(channel.channel_index), use(channel.guid),
                      use(channel.name), use(key)));
  });
}

int CDataSource::query_channel(const std::string& vault_id, const std::string& guid,
                               std::vector<Channel>& found) {
  return append_rows(state_, __func__, found, [&](session& sql) {
    return orvaneplatform::read_channels(sql, vault_id, guid);
  });
}

int CDataSource::remove_channel_by_guid(const std::string& guid) {
  return write_vault(state_, __func__,
                     [&](session& sql) { remove_rows(sql, "channel", "guid", guid); });
}

int CDataSource::remove_channel_by_vault_id(const std::string& vault_id) {
  return write_vault(state_, __func__,
                     [&](session& sql) { remove_rows(sql, "channel", "vault_id", vault_id); });
}

int CDataSource::insert_filter(const Filter& filter) {
  return write_vault(state_, __func__, [&](session& sql) {
    run_statement(sql,
                  "INSERT INTO filter (vault_id, type, target, result, name)"
                  " VALUES (:vault_id, :type, :target, :result, :name)",
                  use(filter.vault_id), use(filter.type), use(filter.target), use(filter.result),
                  use(filter.name));
  });
}

int CDataSource::remove_filter_by_vault_id(const std::string& vault_id) {
  return write_vault(state_, __func__,
                     [&](session& sql) { remove_rows(sql, "filter", "vault_id", vault_id); });
}

int CDataSource::query_filter(const std::string& vault_id, std::vector<Filter>& found) {
  return append_rows(state_, __func__, found,
                     [&](session& sql) { return orvaneplatform::read_filters(sql, vault_id); });
}
