// Channel and filter lists as JSON: the vault stores what the lists contain.
// Input: a channel list, a filter list, a name and a description, as JSON.
#include <json-c/json.h>

#include <algorithm>
#include <memory>

#include "fuzz/fuzz.h"
#include "tests/support/temp_directory.h"

using Json = std::unique_ptr<json_object, decltype(&json_object_put)>;
using Texts = std::vector<std::string>;

// Returns, for each object of a list, its values in one string: numbers, and strings up to the
// first NUL.
static Texts entries_of(json_object* list, const Texts& keys) {
  Texts entries(list != nullptr ? json_object_array_length(list) : 0);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    for (const std::string& key : keys) {
      json_object* value = json_object_object_get(json_object_array_get_idx(list, i), key.c_str());
      const char* text = json_object_get_string(value);
      entries[i] += key == "type" || key == "channel_index"
                        ? std::to_string(json_object_get_int(value))
                        : std::string(text != nullptr ? text : "") + '\f';
    }
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const test::TempVault vault;
  std::vector<Json> json;
  for (const std::string& text : fuzz::texts_of(data, size, 4)) {
    json.emplace_back(json_tokener_parse(text.c_str()), json_object_put);
  }
  json_object* list = json[0].get();
  char id[] = "v";
  int code = 0;
  devcfg_add_device(id, id, nullptr, id, id, nullptr, nullptr, list, 0, false, true, &code);
  char name[kVaultNameBytes];
  char description[kDescriptionBytes];
  std::vector<int> indexes;
  devcfg_modify_device(id, nullptr, json[2].get(), json[3].get(), nullptr, nullptr, list, nullptr,
                       nullptr, name, description, indexes);
  const bool has_filters = devcfg_modify_filter(id, json[1].get()) == 0;
  const Json shown(devcfg_get_device(id, nullptr), json_object_put);
  json_object* all = json_object_object_get(shown.get(), "vault_list");
  const auto compare = [&](const char* stored, json_object* given, const Texts& keys) {
    json_object* data_source = json_object_array_get_idx(all, 0);
    fuzz::require(
        entries_of(json_object_object_get(data_source, stored), keys) == entries_of(given, keys),
        "the vault stores what the list contains");
  };
  compare("channel_guid_list", code == 0 ? list : nullptr, {"guid", "channel_index", "name"});
  compare("filter", has_filters ? json[1].get() : nullptr, {"type", "target", "result", "name"});
  devcfg_remove_device(id, name, description);
  return 0;
}
