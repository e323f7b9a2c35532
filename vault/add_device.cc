#include "vault/add_device.h"

#include <cstring>
#include <string>
#include <vector>

#include "foundation/identifiers.h"
#include "foundation/result_codes.h"
#include "platform/log_sinks.h"
#include "platform/vault_database.h"
#include "vault/internal/channel_list.h"
#include "vault/internal/vault_connection.h"

namespace {

using metadata_vault::DataSource;
using Vault = orvaneip::VaultConnection<CDataSource>;

constexpr char kFunction[] = "devcfg_add_device";

void fill_empty_id(char* vault_id) {
  if (*vault_id == '\0') {
    const std::string id = create_device_id();
    std::memcpy(vault_id, id.c_str(), id.size() + 1);
  }
}

// Returns the first position of the vault list that is free. `all` is in ascending order of index.
int first_free_index(const std::vector<DataSource>& all) {
  int index = 0;
  while (index < static_cast<int>(all.size()) &&
         all[static_cast<std::size_t>(index)].index == index) {
    ++index;
  }
  return index;
}

// Stores the data source at the first free index; its own `index` is ignored.
int store_data_source(const Vault& vault, DataSource data_source) {
  std::vector<DataSource> found;
  vault->query_data_source(data_source.vault_id, "", found);
  if (!found.empty()) {
    orvane_log_debug("[libdevcfg](%s:%d) Device already exist", kFunction, __LINE__);
    return kDevcfgAlreadyExists;
  }
  std::vector<DataSource> all;
  vault->query_data_source_sort_by_index(all);
  orvane_log_debug("[libdevcfg](%s,%d) data_sources.size() : %d", kFunction, __LINE__,
                   static_cast<int>(all.size()));
  if (all.size() >= metadata_vault::kMaxDataSources) {
    orvane_log_debug("[libdevcfg](%s,%d) Vault list was full", kFunction, __LINE__);
    return kDevcfgVaultListFull;
  }
  data_source.index = first_free_index(all);
  if (const int status = vault->insert_data_source(data_source); status != 0) {
    orvane_log_debug("[libzelip](%s:%d) Error! failed to add data source! ret [%d]", kFunction,
                     __LINE__, status);
    return status;
  }
  orvane_log_debug("[libzelip](%s:%d) add data source success!", kFunction, __LINE__);
  return kDevcfgOk;
}

int store_channels(const Vault& vault, json_object* channel_list, const std::string& vault_id) {
  if (channel_list == nullptr) {
    return kDevcfgOk;
  }
  if (const int status = check_channel_list_valid(channel_list); status != 0) {
    orvane_log_debug("[libzelip](%s:%d) channel list have invalid channel", kFunction, __LINE__);
    return status;
  }
  for (const auto& channel : orvaneip::read_channel_list(channel_list, vault_id)) {
    vault->insert_channel(channel);
  }
  return kDevcfgOk;
}

int add(char* vault_id, DataSource data_source, json_object* channel_list) {
  const Vault vault;
  fill_empty_id(vault_id);
  data_source.vault_id = vault_id;
  if (const int result = store_data_source(vault, data_source); result != kDevcfgOk) {
    return result;
  }
  return store_channels(vault, channel_list, data_source.vault_id);
}

std::string text_or_empty(const char* text) { return text != nullptr ? text : ""; }

}  // namespace

char* devcfg_add_device(char* vault_id, char* type, char* /*ignored_text*/, char* vault_name,
                        char* description, json_object* /*ignored_object_1*/,
                        json_object* /*ignored_object_2*/, json_object* channel_list,
                        int /*ignored_number*/, bool /*ignored_flag*/, bool enable,
                        int* error_code) {
  orvane_log_debug("[libdevcfg](%s,%d) start sql insert", kFunction, __LINE__);
  int result = kDevcfgVaultIdMissing;
  if (vault_id != nullptr) {
    DataSource data_source;
    data_source.type = text_or_empty(type);
    data_source.vault_name = text_or_empty(vault_name);
    data_source.description = text_or_empty(description);
    data_source.enable = enable;
    result = add(vault_id, data_source, channel_list);
  }
  if (result != kDevcfgOk) {
    if (error_code != nullptr) {
      *error_code = result;
    }
    return nullptr;
  }
  orvane_log_debug("[libdevcfg](%s,%d) end", kFunction, __LINE__);
  return vault_id;
}
