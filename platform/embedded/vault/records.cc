#include "platform/embedded/vault/records.h"

#include <string_view>
#include <unordered_map>

namespace orvaneplatform {
namespace {

using metadata_vault::Channel;
using metadata_vault::DataSource;
using metadata_vault::Filter;

// The conditions of a query, and the strings that they compare with.
class Conditions {
 public:
  // Adds that `column` equals `value`.
  Conditions& exactly(const char* column, const std::string& value) {
    return add(std::string(column) + " = ", value);
  }
  // The same, unless `value` is empty.
  Conditions& equal(const char* column, const std::string& value) {
    return value.empty() ? *this : exactly(column, value);
  }
  // Adds that the data source of the row has this name, unless it is empty.
  Conditions& of_data_source_named(const std::string& vault_name) {
    if (vault_name.empty()) {
      return *this;
    }
    add("vault_id IN (SELECT vault_id FROM data_source WHERE vault_name = ", vault_name);
    where_ += ")";
    return *this;
  }

  // Returns the WHERE clause, empty without conditions. Its parameters are bound by bind().
  std::string where() const { return where_; }
  void bind(soci::statement& statement) const {
    for (const std::string* value : values_) {
      statement.exchange(soci::use(*value));
    }
  }

 private:
  Conditions& add(const std::string& condition, const std::string& value) {
    where_ += values_.empty() ? " WHERE " : " AND ";
    where_ += condition + ":value" + std::to_string(values_.size());
    values_.push_back(&value);
    return *this;
  }

  std::string where_;
  std::vector<const std::string*> values_;
};

// Returns the rows of a query as records. The first column is the key; the others are read into
// `columns`, which are members of `row` or are copied to it by `complete`, called for each row.
template <typename Record, typename Complete, typename... Columns>
std::vector<Record> read_rows(soci::session& sql, const std::string& query,
                              const Conditions& conditions, Record& row, Complete complete,
                              Columns&... columns) {
  std::vector<Record> rows;
  long long key = 0;
  soci::statement statement(sql);
  statement.exchange(soci::into(key));
  (statement.exchange(soci::into(columns)), ...);
  conditions.bind(statement);
  statement.alloc();
  statement.prepare(query);
  statement.define_and_bind();
  statement.execute();
  while (statement.fetch()) {
    row.record_id = std::to_string(key);
    complete();
    rows.push_back(std::move(row));
  }
  return rows;
}

std::vector<Channel> read_channel_rows(soci::session& sql, const Conditions& conditions) {
  Channel row;
  return read_rows(
      sql,
      "SELECT record_id, vault_id, channel_index, guid, name FROM channel" + conditions.where() +
          " ORDER BY vault_id, channel_index, record_id",
      conditions, row, [] {}, row.vault_id, row.channel_index, row.guid, row.name);
}

std::vector<Filter> read_filter_rows(soci::session& sql, const Conditions& conditions) {
  Filter row;
  return read_rows(
      sql,
      "SELECT record_id, vault_id, type, target, result, name FROM filter" + conditions.where() +
          " ORDER BY vault_id, record_id",
      conditions, row, [] {}, row.vault_id, row.type, row.target, row.result, row.name);
}

// Moves each row to the list of its data source; rows without a data source are left out.
template <typename Row>
void attach_rows(std::vector<Row> rows, std::vector<DataSource>& data_sources,
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
  DataSource row;
  int enable = 0;
  long long last_recv_time = 0;
  const auto complete = [&] {
    row.enable = enable != 0;
    row.last_recv_time = last_recv_time;
  };
  return read_rows(sql,
                   "SELECT record_id, vault_id, type, vault_name, enable, list_index, description,"
                   " last_recv_time FROM data_source" +
                       conditions.where() +
                       (match.vault_id.empty() ? " ORDER BY list_index, record_id" : ""),
                   conditions, row, complete, row.vault_id, row.type, row.vault_name, enable,
                   row.index, row.description, last_recv_time);
}

void read_lists(soci::session& sql, const DataSourceMatch& match,
                std::vector<DataSource>& data_sources) {
  if (data_sources.empty()) {
    return;
  }
  Conditions conditions;
  conditions.equal("vault_id", match.vault_id).of_data_source_named(match.vault_name);
  attach_rows(read_channel_rows(sql, conditions), data_sources, &DataSource::channel_guid_list);
  attach_rows(read_filter_rows(sql, conditions), data_sources, &DataSource::filter);
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
