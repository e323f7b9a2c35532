// The channel list as a JSON array of {"guid", "channel_index", "name"}.
#pragma once

#include <string>
#include <vector>

#include "platform/vault_database.h"

namespace orvaneip {

// Returns the channels of `channel_list`, which check_channel_list_valid has accepted, as records
// of the data source `vault_id`, in list order.
std::vector<metadata_vault::Channel> read_channel_list(json_object* channel_list,
                                                       const std::string& vault_id);

}  // namespace orvaneip
