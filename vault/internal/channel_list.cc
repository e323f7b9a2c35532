#include "vault/internal/channel_list.h"

#include "base/json_fields.h"

namespace orvaneip {

std::vector<metadata_vault::Channel> read_channel_list(json_object* channel_list,
                                                       const std::string& vault_id) {
  std::vector<metadata_vault::Channel> channels;
  for (json_object* entry : base::entries(channel_list)) {
    metadata_vault::Channel& channel = channels.emplace_back();
    channel.guid = base::string_field(entry, "guid");
    channel.channel_index = base::int_field(entry, "channel_index");
    channel.name = base::string_field(entry, "name");
    channel.vault_id = vault_id;
  }
  return channels;
}

}  // namespace orvaneip
