#include <json-c/json.h>

#include <limits>
#include <string_view>
#include <unordered_set>

#include "base/json_fields.h"
#include "platform/vault_database.h"

namespace {

using namespace metadata_vault;

bool is_channel_index(json_object* value) {
  return json_object_is_type(value, json_type_int) && json_object_get_int64(value) >= 0 &&
         json_object_get_int64(value) <= std::numeric_limits<std::int32_t>::max();
}

// Checks the entries of one list in turn.
class ChannelListChecker {
 public:
  VaultStatus check(json_object* entry) {
    if (!json_object_is_type(entry, json_type_object)) {
      return kChannelNotObject;
    }
    json_object* guid = json_object_object_get(entry, "guid");
    if (!base::is_text(guid) || json_object_get_string_len(guid) == 0) {
      return kChannelGuidInvalid;
    }
    json_object* index = json_object_object_get(entry, "channel_index");
    if (!is_channel_index(index)) {
      return kChannelIndexInvalid;
    }
    if (!base::is_text(json_object_object_get(entry, "name"))) {
      return kChannelNameInvalid;
    }
    if (!guids_.insert(json_object_get_string(guid)).second) {
      return kChannelGuidRepeated;
    }
    return indexes_.insert(json_object_get_int64(index)).second ? kVaultOk : kChannelIndexRepeated;
  }

 private:
  std::unordered_set<std::string_view> guids_;
  std::unordered_set<std::int64_t> indexes_;
};

}  // namespace

int check_channel_list_valid(json_object* channel_list) {
  if (!json_object_is_type(channel_list, json_type_array)) {
    return kChannelListNotArray;
  }
  ChannelListChecker checker;
  const std::size_t length = json_object_array_length(channel_list);
  for (std::size_t i = 0; i < length; ++i) {
    const VaultStatus status = checker.check(json_object_array_get_idx(channel_list, i));
    if (status != kVaultOk) {
      return status;
    }
  }
  return kVaultOk;
}
