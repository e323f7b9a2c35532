#include "bench/sample_vault.h"

#include <json-c/json.h>

#include <cstdlib>

#include "orvaneip.h"

namespace bench {
namespace {

json_object* channel_list(int count) {
  json_object* list = json_object_new_array();
  for (int i = 0; i < count; ++i) {
    json_object* channel = json_object_new_object();
    json_object_object_add(channel, "guid", json_object_new_string(create_device_id().c_str()));
    json_object_object_add(channel, "channel_index", json_object_new_int(i));
    json_object_object_add(channel, "name", json_object_new_string("Camera over the till"));
    json_object_array_add(list, channel);
  }
  return list;
}

json_object* filter_list(int count) {
  json_object* list = json_object_new_array();
  for (int i = 0; i < count; ++i) {
    json_object* filter = json_object_new_object();
    json_object_object_add(filter, "type", json_object_new_int(i % 3));
    json_object_object_add(filter, "target", json_object_new_string("TOTAL EUR"));
    json_object_object_add(filter, "result", json_object_new_string("total"));
    json_object_object_add(filter, "name", json_object_new_string("Shorter totals"));
    json_object_array_add(list, filter);
  }
  return list;
}

bool add_with(const std::string& vault_id, json_object* channels) {
  std::string id = vault_id;
  std::string type = "pos";
  std::string name = "Till";
  std::string description = "The till at the front door";
  int error_code = 0;
  return devcfg_add_device(id.data(), type.data(), nullptr, name.data(), description.data(),
                           nullptr, nullptr, channels, 0, false, true, &error_code) != nullptr;
}

}  // namespace

SampleVault::SampleVault() { setenv("ORVANE_VAULT", database().c_str(), 1); }

bool SampleVault::add_plain(const std::string& vault_id) const {
  return add_with(vault_id, nullptr);
}

bool SampleVault::add(const std::string& vault_id, int channels, int filters) const {
  std::string id = vault_id;
  json_object* channel_array = channel_list(channels);
  json_object* filter_array = filter_list(filters);
  const bool added =
      add_with(vault_id, channel_array) && devcfg_modify_filter(id.data(), filter_array) == 0;
  json_object_put(channel_array);
  json_object_put(filter_array);
  return added;
}

}  // namespace bench
