// The rows of the vault database as records. All functions run in a transaction of the engine and
// throw base::Failure.
#pragma once

#include <string>
#include <vector>

#include "platform/embedded/vault/engine.h"
#include "platform/vault_database.h"

namespace orvaneplatform {

// Which rows: those whose columns equal the texts that are not empty.
struct DataSourceMatch {
  const std::string& vault_id;
  const std::string& vault_name;
};

// Returns data sources by index, without their lists.
std::vector<metadata_vault::DataSource> read_data_sources(Engine& engine,
                                                          const DataSourceMatch& match);

// Returns data sources by index, with their filters and channels: three queries, one flush.
std::vector<metadata_vault::DataSource> read_whole_data_sources(Engine& engine,
                                                                const DataSourceMatch& match);

// Returns the channels whose vault_id and guid equal the texts that are not empty, by
// channel_index.
std::vector<metadata_vault::Channel> read_channels(Engine& engine, const std::string& vault_id,
                                                   const std::string& guid);

// Returns the filters of one data source, as they were stored.
std::vector<metadata_vault::Filter> read_filters(Engine& engine, const std::string& vault_id);

}  // namespace orvaneplatform
