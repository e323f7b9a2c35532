// The rows of the vault database as records.
#pragma once

#include <soci/soci.h>

#include <string>
#include <vector>

#include "platform/vault_database.h"

namespace orvaneplatform {

// Which rows: those whose columns equal the texts that are not empty.
struct DataSourceMatch {
  const std::string& vault_id;
  const std::string& vault_name;
};

// Data sources by index, without their lists.
std::vector<metadata_vault::DataSource> read_data_sources(soci::session& sql,
                                                          const DataSourceMatch& match);

// Fills the filter and channel lists of `data_sources`, which read_data_sources has just read for
// the same match, with one query for each kind.
void read_lists(soci::session& sql, const DataSourceMatch& match,
                std::vector<metadata_vault::DataSource>& data_sources);

// Channels whose vault_id and guid equal the texts that are not empty, by channel_index.
std::vector<metadata_vault::Channel> read_channels(soci::session& sql, const std::string& vault_id,
                                                   const std::string& guid);

// The filters of one data source, as they were stored.
std::vector<metadata_vault::Filter> read_filters(soci::session& sql, const std::string& vault_id);

}  // namespace orvaneplatform
