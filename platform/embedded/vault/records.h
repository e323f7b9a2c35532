// Reads rows of the vault database as records.
#pragma once

#include <soci/soci.h>

#include <string>
#include <vector>

#include "platform/vault_database.h"

namespace orvaneplatform {

// Selects the data sources with this vault_id and this vault_name; an empty string selects all.
struct DataSourceMatch {
  const std::string& vault_id;
  const std::string& vault_name;
};

// Returns the data sources ordered by index, without their lists.
std::vector<metadata_vault::DataSource> read_data_sources(soci::session& sql,
                                                          const DataSourceMatch& match);

// Fills the filter and channel lists of `data_sources`, the result of read_data_sources for the
// same match in this transaction. Needs one query for the filters and one for the channels.
void read_lists(soci::session& sql, const DataSourceMatch& match,
                std::vector<metadata_vault::DataSource>& data_sources);

// Returns the channels with this vault_id and this guid, ordered by channel_index; an empty string
// selects all.
std::vector<metadata_vault::Channel> read_channels(soci::session& sql, const std::string& vault_id,
                                                   const std::string& guid);

// Returns the filters of one data source in the order in which they were stored.
std::vector<metadata_vault::Filter> read_filters(soci::session& sql, const std::string& vault_id);

}  // namespace orvaneplatform
