#include "vault/modify_device.h"

#include <json-c/json.h>

#include <cstring>
#include <string>

#include "base/json_fields.h"
#include "foundation/result_codes.h"
#include "platform/log_sinks.h"
#include "platform/vault_database.h"
#include "vault/internal/channel_list.h"
#include "vault/internal/vault_connection.h"
#include "vault/lookups.h"

namespace {

using metadata_vault::DataSource;
using Vault = orvaneip::VaultConnection<CDataSource>;

constexpr char kModify[] = "devcfg_modify_device";

bool is_missing(const char* vault_id) { return vault_id == nullptr || *vault_id == '\0'; }

// Fills the whole buffer with the text, cut to leave room for a terminator, and zeros.
void copy_to_buffer(const std::string& text, char* buffer, std::size_t size_bytes) {
  if (buffer != nullptr) {
    std::strncpy(buffer, text.c_str(), size_bytes - 1);
    buffer[size_bytes - 1] = '\0';
  }
}

void copy_old_texts(const DataSource& current, char* old_vault_name, char* old_description) {
  copy_to_buffer(current.vault_name, old_vault_name, kVaultNameBytes);
  copy_to_buffer(current.description, old_description, kDescriptionBytes);
}

// Returns the record that an update stores: the current one without its lists and its record_id.
DataSource update_record(const DataSource& current) {
  DataSource record;
  record.vault_id = current.vault_id;
  record.type = current.type;
  record.vault_name = current.vault_name;
  record.enable = current.enable;
  record.index = current.index;
  record.description = current.description;
  record.last_recv_time = current.last_recv_time;
  return record;
}

bool is_name_taken(std::string name, const DataSource& current) {
  int match_count = 0;
  devcfg_check_vault_name(name.data(), &match_count);
  return match_count != 0 && name != current.vault_name;
}

int edit_name(const Vault& vault, const std::string& name, json_object* description,
              DataSource& current) {
  orvane_log_debug("[libdevcfg](%s,%d) edit name and description", kModify, __LINE__);
  if (is_name_taken(name, current)) {
    return kDevcfgNameTaken;
  }
  current.vault_name = name;
  current.description = base::string_value(description);
  vault->update_data_source(update_record(current));
  return kDevcfgOk;
}

void edit_enable(const Vault& vault, json_object* enable, DataSource& current) {
  orvane_log_debug("[libdevcfg](%s,%d) edit enable", kModify, __LINE__);
  current.enable = json_object_get_boolean(enable) != 0;
  vault->update_data_source(update_record(current));
}

int edit_channels(const Vault& vault, json_object* channel_list, const std::string& vault_id,
                  std::vector<int>& channel_indexes) {
  orvane_log_debug("[libdevcfg](%s,%d) edit channel", kModify, __LINE__);
  if (const int status = check_channel_list_valid(channel_list); status != 0) {
    orvane_log_debug("[libzelip](%s:%d) channel list have invalid channel", kModify, __LINE__);
    return status;
  }
  vault->remove_channel_by_vault_id(vault_id);
  for (const auto& channel : orvaneip::read_channel_list(channel_list, vault_id)) {
    channel_indexes.push_back(channel.channel_index);
    vault->insert_channel(channel);
  }
  return kDevcfgOk;
}

}  // namespace

int devcfg_modify_device(char* vault_id, json_object* /*ignored_object_1*/, json_object* vault_name,
                         json_object* description, json_object* /*ignored_object_2*/,
                         json_object* /*ignored_object_3*/, json_object* channel_list,
                         json_object* /*ignored_object_4*/, json_object* enable,
                         char* old_vault_name, char* old_description,
                         std::vector<int>& channel_indexes) {
  if (is_missing(vault_id)) {
    return kDevcfgVaultIdMissing;
  }
  const Vault vault;
  std::vector<DataSource> found;
  vault->query_data_source(vault_id, "", found);
  if (found.empty()) {
    orvane_log_debug("[libdevcfg](%s,%d) vault id is not exist!", kModify, __LINE__);
    return kDevcfgFailed;
  }
  DataSource& current = found.front();
  copy_old_texts(current, old_vault_name, old_description);

  if (const std::string name = base::string_value(vault_name); !name.empty()) {
    if (const int result = edit_name(vault, name, description, current); result != kDevcfgOk) {
      return result;
    }
  }
  if (enable != nullptr) {
    edit_enable(vault, enable, current);
  }
  if (channel_list != nullptr) {
    return edit_channels(vault, channel_list, vault_id, channel_indexes);
  }
  return kDevcfgOk;
}

int devcfg_remove_device(char* vault_id, char* old_vault_name, char* old_description) {
  if (is_missing(vault_id)) {
    return kDevcfgOk;
  }
  const Vault vault;
  std::vector<DataSource> found;
  vault->query_data_source(vault_id, "", found);
  if (!found.empty()) {
    copy_old_texts(found.front(), old_vault_name, old_description);
    DataSource record;
    record.vault_id = vault_id;
    vault->remove_data_source(record);
  }
  return kDevcfgOk;
}
