#include "vault/internal/channel_list.h"

#include <json-c/json.h>

#include "base/json_fields.h"

namespace orvaneip {

std::vector<metadata_vault::Channel> read_channel_list(json_object* channel_list,
                                                       const std::string& vault_id) {
  const std::size_t length = json_object_array_length(channel_list);
  std::vector<metadata_vault::Channel> channels(length);
  for (std::size_t i = 0; i < length; ++i) {
    json_object* entry = json_object_array_get_idx(channel_list, i);
    channels[i].guid = base::string_field(entry, "guid");
    channels[i].channel_index = base::int_field(entry, "channel_index");
    channels[i].name = base::string_field(entry, "name");
    channels[i].vault_id = vault_id;
  }
  return channels;
}

}  // namespace orvaneip
