// Channel and filter lists as JSON through the vault: what is stored is what the lists say.
// Input: a channel list, a filter list, a name and a description, as JSON.
#include <json-c/json.h>

#include <algorithm>
#include <memory>

#include "fuzz/fuzz.h"
#include "orvaneip.h"
#include "tests/support/temp_folder.h"

using Json = std::unique_ptr<json_object, decltype(&json_object_put)>;
using Texts = std::vector<std::string>;

// For each object of a list its number and its texts, these up to the first NUL.
static Texts entries_of(json_object* list, const char* number, const Texts& keys) {
  Texts entries;
  for (std::size_t i = 0; i < json_object_array_length(list); ++i) {
    json_object* entry = json_object_array_get_idx(list, i);
    entries.push_back(std::to_string(json_object_get_int(json_object_object_get(entry, number))));
    for (const std::string& key : keys) {
      const char* text = json_object_get_string(json_object_object_get(entry, key.c_str()));
      entries.back().append("\f").append(text != nullptr ? text : "");
    }
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const test::TempVault folder;
  std::vector<Json> json;
  for (const std::string& text : fuzz::texts_of(data, size, 4)) {
    json.emplace_back(json_tokener_parse(text.c_str()), json_object_put);
  }
  json_object* channels = json[0].get();
  const int valid = channels != nullptr ? check_channel_list_valid(channels) : 0;
  char id[] = "v";
  int code = 0;
  devcfg_add_device(id, id, nullptr, id, id, nullptr, nullptr, channels, 0, false, true, &code);
  fuzz::require(code == valid, "a channel list is refused as the check says");
  char name[kVaultNameBytes];
  char description[kDescriptionBytes];
  std::vector<int> indexes;
  devcfg_modify_device(id, nullptr, json[2].get(), json[3].get(), nullptr, nullptr, channels,
                       nullptr, nullptr, name, description, indexes);
  const bool has_filters = devcfg_modify_filter(id, json[1].get()) == 0;
  const Json document(devcfg_get_device(id, &code), json_object_put);
  const auto shown = [&](const char* list) {
    json_object* all = json_object_object_get(document.get(), "vault_list");
    return json_object_object_get(json_object_array_get_idx(all, 0), list);
  };
  const auto equal = [](json_object* left, json_object* right, auto... keys) {
    return entries_of(left, keys...) == entries_of(right, keys...);
  };
  fuzz::require(
      channels == nullptr || valid != 0 ||
          equal(shown("channel_guid_list"), channels, "channel_index", Texts{"guid", "name"}),
      "the channels are those of the list");
  fuzz::require(!has_filters || equal(shown("filter"), json[1].get(), "type",
                                      Texts{"target", "result", "name"}),
                "and so are the filters");
  devcfg_remove_device(id, name, description);
  return 0;
}
