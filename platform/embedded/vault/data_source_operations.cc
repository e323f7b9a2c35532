// CDataSource on the embedded vault database: one transaction for each operation.
#include <charconv>
#include <iterator>

#include "platform/embedded/vault/connection_state.h"
#include "platform/embedded/vault/records.h"
#include "platform/vault_database.h"

namespace {

using namespace metadata_vault;
using orvaneplatform::change_vault;
using orvaneplatform::Engine;
using orvaneplatform::read_vault;
using orvaneplatform::write_vault;

// Reads records with `read(engine)` and appends them to `found`.
template <typename Record, typename Read>
int append_records(const orvaneplatform::VaultState& state, const char* operation,
                   std::vector<Record>& found, Read read) {
  std::vector<Record> records;
  const VaultStatus status =
      read_vault(state, operation, [&](Engine& engine) { records = read(engine); });
  if (status == kVaultOk) {
    found.insert(found.end(), std::make_move_iterator(records.begin()),
                 std::make_move_iterator(records.end()));
  }
  return status;
}

// Runs a statement that must change a row.
void run_on_row(Engine& engine, orvaneplatform::Statement statement) {
  if (run(engine, std::move(statement)) == 0) {
    throw base::Failure("", "no such record", kVaultNotFound);
  }
}

// Returns 0, which is no key of the database, when `record_id` is not a number.
std::int64_t key_of(const std::string& record_id) {
  std::int64_t key = 0;
  const char* end = record_id.data() + record_id.size();
  const auto read = std::from_chars(record_id.data(), end, key);
  return read.ec == std::errc() && read.ptr == end ? key : 0;
}

}  // namespace

CDataSource::CDataSource() = default;
CDataSource::~CDataSource() = default;

int CDataSource::query_data_source(const std::string& vault_id, const std::string& vault_name,
                                   std::vector<DataSource>& found) {
  return append_records(state_, __func__, found, [&](Engine& engine) {
    return orvaneplatform::read_whole_data_sources(engine, {vault_id, vault_name});
  });
}

int CDataSource::query_data_source_sort_by_index(std::vector<DataSource>& found) {
  return append_records(state_, __func__, found, [](Engine& engine) {
    return orvaneplatform::read_data_sources(engine, {"", ""});
  });
}

int CDataSource::insert_data_source(const DataSource& data_source) {
  return write_vault(state_, __func__, [&](Engine& engine) {
    engine.queue(
        {"INSERT INTO data_source (vault_id, type, vault_name, enable, list_index,"
         " description, last_recv_time) VALUES ($1, $2, $3, $4, $5, $6, 0)",
         {&data_source.vault_id, &data_source.type, &data_source.vault_name,
          data_source.enable ? 1 : 0, data_source.index, &data_source.description}});
  });
}

int CDataSource::update_data_source(const DataSource& data_source) {
  return change_vault(state_, __func__, kVaultNotFound, [&](Engine& engine) {
    run_on_row(
        engine,
        {"UPDATE data_source SET type = $1, vault_name = $2, enable = $3, list_index = $4,"
         " description = $5, last_recv_time = $6 WHERE vault_id = $7",
         {&data_source.type, &data_source.vault_name, data_source.enable ? 1 : 0, data_source.index,
          &data_source.description, data_source.last_recv_time, &data_source.vault_id}});
  });
}

int CDataSource::remove_data_source(const DataSource& data_source) {
  return change_vault(state_, __func__, kVaultNotFound, [&](Engine& engine) {
    const std::string& vault_id = data_source.vault_id;
    engine.queue({"DELETE FROM channel WHERE vault_id = $1", {&vault_id}});
    engine.queue({"DELETE FROM filter WHERE vault_id = $1", {&vault_id}});
    // Without such a data source the two removals are rolled back.
    run_on_row(engine, {"DELETE FROM data_source WHERE vault_id = $1", {&vault_id}});
  });
}

int CDataSource::insert_channel(const Channel& channel) {
  return write_vault(state_, __func__, [&](Engine& engine) {
    engine.queue(
        {"INSERT INTO channel (vault_id, channel_index, guid, name) VALUES ($1, $2, $3, $4)",
         {&channel.vault_id, channel.channel_index, &channel.guid, &channel.name}});
  });
}

int CDataSource::update_channel(const Channel& channel) {
  return change_vault(state_, __func__, kVaultNotFound, [&](Engine& engine) {
    run_on_row(engine, {"UPDATE channel SET vault_id = $1, channel_index = $2, guid = $3,"
                        " name = $4 WHERE record_id = $5",
                        {&channel.vault_id, channel.channel_index, &channel.guid, &channel.name,
                         key_of(channel.record_id)}});
  });
}

int CDataSource::query_channel(const std::string& vault_id, const std::string& guid,
                               std::vector<Channel>& found) {
  return append_records(state_, __func__, found, [&](Engine& engine) {
    return orvaneplatform::read_channels(engine, vault_id, guid);
  });
}

int CDataSource::remove_channel_by_guid(const std::string& guid) {
  return change_vault(state_, __func__, kVaultOk, [&](Engine& engine) {
    engine.queue({"DELETE FROM channel WHERE guid = $1", {&guid}});
  });
}

int CDataSource::remove_channel_by_vault_id(const std::string& vault_id) {
  return change_vault(state_, __func__, kVaultOk, [&](Engine& engine) {
    engine.queue({"DELETE FROM channel WHERE vault_id = $1", {&vault_id}});
  });
}

int CDataSource::insert_filter(const Filter& filter) {
  return write_vault(state_, __func__, [&](Engine& engine) {
    engine.queue(
        {"INSERT INTO filter (vault_id, type, target, result, name) VALUES ($1, $2, $3, $4, $5)",
         {&filter.vault_id, filter.type, &filter.target, &filter.result, &filter.name}});
  });
}

int CDataSource::remove_filter_by_vault_id(const std::string& vault_id) {
  return change_vault(state_, __func__, kVaultOk, [&](Engine& engine) {
    engine.queue({"DELETE FROM filter WHERE vault_id = $1", {&vault_id}});
  });
}

int CDataSource::query_filter(const std::string& vault_id, std::vector<Filter>& found) {
  return append_records(state_, __func__, found, [&](Engine& engine) {
    return orvaneplatform::read_filters(engine, vault_id);
  });
}
