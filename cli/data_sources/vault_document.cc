#include "cli/data_sources/vault_document.h"

#include "cli/data_sources/channel_list.h"
#include "cli/filters/filter_list.h"

namespace devcfg {
namespace {

json_object* data_source_object(const DataSource& data_source) {
  json_object* object = json_object_new_object();
  json_object_object_add(object, "vault_id", json_text(data_source.vault_id));
  json_object_object_add(object, "vault_name", json_text(data_source.vault_name));
  json_object_object_add(object, "description", json_text(data_source.description));
  json_object_object_add(object, "type", json_text(data_source.type));
  json_object_object_add(object, "index", json_object_new_int(data_source.index));
  json_object_object_add(object, "enable", json_object_new_boolean(data_source.enable));
  json_object_object_add(object, "last_recv_time",
                         json_object_new_int64(data_source.last_recv_time));
  json_object_object_add(object, "filter", json_array(data_source.filter, filter_object));
  json_object_object_add(object, "channel_guid_list",
                         json_array(data_source.channel_guid_list, channel_object));
  return object;
}

}  // namespace

Json vault_document(const std::vector<DataSource>& data_sources) {
  Json document(json_object_new_object());
  json_object_object_add(document.get(), "vault_list",
                         json_array(data_sources, data_source_object));
  return document;
}

}  // namespace devcfg
