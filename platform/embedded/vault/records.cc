#include "platform/embedded/vault/records.h"

#include <string_view>
#include <unordered_map>

namespace orvaneplatform {
namespace {

using metadata_vault::Channel;
using metadata_vault::DataSource;
using metadata_vault::Filter;

// The conditions of a query, and the texts that they compare with.
class Conditions {
 public:
  // `column` must equal `text`.
  Conditions& exactly(const char* column, const std::string& text) {
    return add(std::string(column) + " = ", text);
  }
  // The same, unless `text` is empty.
  Conditions& equal(const char* column, const std::string& text) {
    return text.empty() ? *this : exactly(column, text);
  }
  // The rows of the data source with this name, unless that is empty.
  Conditions& of_data_source_named(const std::string& vault_name) {
    if (vault_name.empty()) {
      return *this;
    }
    add("vault_id IN (SELECT vault_id FROM data_source WHERE vault_name = ", vault_name);
    where_ += ")";
    return *this;
  }

  // The condition's text to follow a FROM; the statement takes the compared texts as well.
  std::string where() const { return where_; }
  void bind(soci::statement& statement) const {
    for (const std::string* text : texts_) {
      statement.exchange(soci::use(*text));
    }
  }

 private:
  Conditions& add(const std::string& condition, const std::string& text) {
    where_ += texts_.empty() ? " WHERE " : " AND ";
    where_ += condition + ":text" + std::to_string(texts_.size());
    texts_.push_back(&text);
    return *this;
  }

  std::string where_;
  std::vector<const std::string*> texts_;
};

// Runs a query whose columns are bound by `bind`, and calls `take` after each row.
template <typename Bind, typename Take>
void for_each_row(soci::session& sql, const std::string& query, const Conditions& conditions,
                  Bind bind, Take take) {
  soci::statement statement(sql);
  bind(statement);
  conditions.bind(statement);
  statement.alloc();
  statement.prepare(query);
  statement.define_and_bind();
  statement.execute();
  while (statement.fetch()) {
    take();
  }
}

std::vector<Channel> read_channel_rows(soci::session& sql, const Conditions& conditions) {
  std::vector<Channel> channels;
  Channel row;
  long long key = 0;
  for_each_row(
      sql,
      "SELECT record_id, vault_id, channel_index, guid, name FROM channel" + conditions.where() +
          " ORDER BY vault_id, channel_index, record_id",
      conditions,
      [&](soci::statement& statement) {
        statement.exchange(soci::into(key));
        statement.exchange(soci::into(row.vault_id));
        statement.exchange(soci::into(row.channel_index));
        statement.exchange(soci::into(row.guid));
        statement.exchange(soci::into(row.name));
      },
      [&] {
        row.record_id = std::to_string(key);
        channels.push_back(std::move(row));
      });
  return channels;
}

std::vector<Filter> read_filter_rows(soci::session& sql, const Conditions& conditions) {
  std::vector<Filter> filters;
  Filter row;
  long long key = 0;
  for_each_row(
      sql,
      "SELECT record_id, vault_id, type, target, result, name FROM filter" + conditions.where() +
          " ORDER BY vault_id, record_id",
      conditions,
      [&](soci::statement& statement) {
        statement.exchange(soci::into(key));
        statement.exchange(soci::into(row.vault_id));
        statement.exchange(soci::into(row.type));
        statement.exchange(soci::into(row.target));
        statement.exchange(soci::into(row.result));
        statement.exchange(soci::into(row.name));
      },
      [&] {
        row.record_id = std::to_string(key);
        filters.push_back(std::move(row));
      });
  return filters;
}

// Moves each row to the data source that it belongs to; rows without one are left out. Rows of one
// data source stand together.
template <typename Row>
void hand_out(std::vector<Row> rows, std::vector<DataSource>& data_sources,
              std::vector<Row> DataSource::*list) {
  std::unordered_map<std::string_view, DataSource*> by_id;
  for (DataSource& data_source : data_sources) {
    by_id.emplace(data_source.vault_id, &data_source);
  }
  for (Row& row : rows) {
    if (const auto owner = by_id.find(row.vault_id); owner != by_id.end()) {
      (owner->second->*list).push_back(std::move(row));
    }
  }
}

}  // namespace

std::vector<DataSource> read_data_sources(soci::session& sql, const DataSourceMatch& match) {
  Conditions conditions;
  conditions.equal("vault_id", match.vault_id).equal("vault_name", match.vault_name);
  std::vector<DataSource> data_sources;
  DataSource row;
  long long key = 0;
  int enable = 0;
  long long last_recv_time = 0;
  for_each_row(
      sql,
      "SELECT record_id, vault_id, type, vault_name, enable, list_index, description,"
      " last_recv_time FROM data_source" +
          conditions.where() + (match.vault_id.empty() ? " ORDER BY list_index, record_id" : ""),
      conditions,
      [&](soci::statement& statement) {
        statement.exchange(soci::into(key));
        statement.exchange(soci::into(row.vault_id));
        statement.exchange(soci::into(row.type));
        statement.exchange(soci::into(row.vault_name));
        statement.exchange(soci::into(enable));
        statement.exchange(soci::into(row.index));
        statement.exchange(soci::into(row.description));
        statement.exchange(soci::into(last_recv_time));
      },
      [&] {
        row.record_id = std::to_string(key);
        row.enable = enable != 0;
        row.last_recv_time = last_recv_time;
        data_sources.push_back(std::move(row));
      });
  return data_sources;
}

void read_lists(soci::session& sql, const DataSourceMatch& match,
                std::vector<DataSource>& data_sources) {
  if (data_sources.empty()) {
    return;
  }
  Conditions conditions;
  conditions.equal("vault_id", match.vault_id).of_data_source_named(match.vault_name);
  hand_out(read_channel_rows(sql, conditions), data_sources, &DataSource::channel_guid_list);
  hand_out(read_filter_rows(sql, conditions), data_sources, &DataSource::filter);
}

std::vector<Channel> read_channels(soci::session& sql, const std::string& vault_id,
                                   const std::string& guid) {
  Conditions conditions;
  conditions.equal("vault_id", vault_id).equal("guid", guid);
  return read_channel_rows(sql, conditions);
}

std::vector<Filter> read_filters(soci::session& sql, const std::string& vault_id) {
  return read_filter_rows(sql, Conditions().exactly("vault_id", vault_id));
}

}  // namespace orvaneplatform
