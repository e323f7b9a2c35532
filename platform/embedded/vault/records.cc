#include "platform/embedded/vault/records.h"

#include <string_view>
#include <unordered_map>

namespace orvaneplatform {
namespace {

using metadata_vault::Channel;
using metadata_vault::DataSource;
using metadata_vault::Filter;

// A query that is put together condition by condition.
class Query {
 public:
  explicit Query(std::string_view select) : statement_{std::string(select)} {}

  Query& where_equal(const char* column, const std::string& text) {
    return where(std::string(column) + " = ", text, "");
  }
  Query& where_equal_unless_empty(const char* column, const std::string& text) {
    return text.empty() ? *this : where_equal(column, text);
  }
  // The rows of the data source with this name, unless it is empty.
  Query& where_data_source_named(const std::string& vault_name) {
    return vault_name.empty()
               ? *this
               : where("vault_id IN (SELECT vault_id FROM data_source WHERE vault_name = ",
                       vault_name, ")");
  }

  // Queues the query; `read` makes a record of a row, which is appended to `records`.
  template <typename Record>
  void queue(Engine& engine, const char* order, Record (*read)(const Row&),
             std::vector<Record>& records) {
    statement_.sql += order;
    statement_.on_row = [read, &records](const Row& row) { records.push_back(read(row)); };
    engine.queue(statement_);
  }

 private:
  Query& where(const std::string& before, const std::string& text, const char* after) {
    statement_.sql += statement_.values.empty() ? " WHERE " : " AND ";
    statement_.values.emplace_back(&text);
    statement_.sql += before + "$" + std::to_string(statement_.values.size());
    statement_.sql += after;
    return *this;
  }

  Statement statement_;
};

DataSource read_data_source(const Row& row) {
  DataSource data_source;
  data_source.record_id = std::to_string(row.integer(0));
  data_source.vault_id = row.text(1);
  data_source.type = row.text(2);
  data_source.vault_name = row.text(3);
  data_source.enable = row.integer(4) != 0;
  data_source.index = static_cast<std::int32_t>(row.integer(5));
  data_source.description = row.text(6);
  data_source.last_recv_time = row.integer(7);
  return data_source;
}

Channel read_channel(const Row& row) {
  return {std::to_string(row.integer(0)), row.text(1), static_cast<std::int32_t>(row.integer(2)),
          row.text(3), row.text(4)};
}

Filter read_filter(const Row& row) {
  return {std::to_string(row.integer(0)),
          row.text(1),
          static_cast<std::int32_t>(row.integer(2)),
          row.text(3),
          row.text(4),
          row.text(5)};
}

void queue_data_sources(Engine& engine, const DataSourceMatch& match,
                        std::vector<DataSource>& records) {
  Query(
      "SELECT record_id, vault_id, type, vault_name, enable, list_index, description,"
      " last_recv_time FROM data_source")
      .where_equal_unless_empty("vault_id", match.vault_id)
      .where_equal_unless_empty("vault_name", match.vault_name)
      .queue(engine, match.vault_id.empty() ? " ORDER BY list_index, record_id" : "",
             read_data_source, records);
}

Query channel_query() {
  return Query("SELECT record_id, vault_id, channel_index, guid, name FROM channel");
}

void queue_channels(Engine& engine, Query query, std::vector<Channel>& records) {
  query.queue(engine, " ORDER BY vault_id, channel_index, record_id", read_channel, records);
}

Query filter_query() {
  return Query("SELECT record_id, vault_id, type, target, result, name FROM filter");
}

void queue_filters(Engine& engine, Query query, std::vector<Filter>& records) {
  query.queue(engine, " ORDER BY vault_id, record_id", read_filter, records);
}

// Moves each row to the data source that it belongs to; rows without one are dropped.
template <typename Record>
void attach_rows(std::vector<Record> rows, std::vector<DataSource>& data_sources,
                 std::vector<Record> DataSource::*list) {
  std::unordered_map<std::string_view, DataSource*> by_id;
  for (DataSource& data_source : data_sources) {
    by_id.emplace(data_source.vault_id, &data_source);
  }
  for (Record& row : rows) {
    if (const auto owner = by_id.find(row.vault_id); owner != by_id.end()) {
      (owner->second->*list).push_back(std::move(row));
    }
  }
}

}  // namespace

std::vector<DataSource> read_data_sources(Engine& engine, const DataSourceMatch& match) {
  std::vector<DataSource> data_sources;
  queue_data_sources(engine, match, data_sources);
  engine.flush();
  return data_sources;
}

std::vector<DataSource> read_whole_data_sources(Engine& engine, const DataSourceMatch& match) {
  std::vector<DataSource> data_sources;
  std::vector<Channel> channels;
  std::vector<Filter> filters;
  queue_data_sources(engine, match, data_sources);
  queue_channels(engine,
                 channel_query()
                     .where_equal_unless_empty("vault_id", match.vault_id)
                     .where_data_source_named(match.vault_name),
                 channels);
  queue_filters(engine,
                filter_query()
                    .where_equal_unless_empty("vault_id", match.vault_id)
                    .where_data_source_named(match.vault_name),
                filters);
  engine.flush();
  attach_rows(std::move(channels), data_sources, &DataSource::channel_guid_list);
  attach_rows(std::move(filters), data_sources, &DataSource::filter);
  return data_sources;
}

std::vector<Channel> read_channels(Engine& engine, const std::string& vault_id,
                                   const std::string& guid) {
  std::vector<Channel> channels;
  queue_channels(engine,
                 channel_query()
                     .where_equal_unless_empty("vault_id", vault_id)
                     .where_equal_unless_empty("guid", guid),
                 channels);
  engine.flush();
  return channels;
}

std::vector<Filter> read_filters(Engine& engine, const std::string& vault_id) {
  std::vector<Filter> filters;
  queue_filters(engine, filter_query().where_equal("vault_id", vault_id), filters);
  engine.flush();
  return filters;
}

}  // namespace orvaneplatform
