#include "vault/filters.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/json_fields.h"
#include "foundation/result_codes.h"
#include "platform/log_sinks.h"
#include "platform/vault_database.h"
#include "vault/internal/vault_connection.h"

namespace {

using metadata_vault::Filter;

Filter read_filter(json_object* entry, const std::string& vault_id) {
  Filter filter;
  filter.name = base::string_field(entry, "name");
  filter.target = base::string_field(entry, "target");
  filter.result = base::string_field(entry, "result");
  filter.type = base::int_field(entry, "type");
  filter.vault_id = vault_id;
  return filter;
}

bool is_array_of_objects(json_object* list) {
  if (!base::is_array(list)) {
    return false;
  }
  const std::vector<json_object*> entries = base::entries(list);
  return std::all_of(entries.begin(), entries.end(), base::is_object);
}

std::vector<Filter> read_filter_list(json_object* filter_list, const std::string& vault_id) {
  std::vector<Filter> filters;
  for (json_object* entry : base::entries(filter_list)) {
    filters.push_back(read_filter(entry, vault_id));
  }
  return filters;
}

}  // namespace

int devcfg_modify_filter(char* vault_id, json_object* filter_list) {
  if (vault_id == nullptr || *vault_id == '\0') {
    orvane_log_debug("[devcfg](%s:%d) Vault ID=%s doesn't exist", __func__, __LINE__,
                     vault_id != nullptr ? vault_id : "(null)");
    return kDevcfgVaultIdMissing;
  }
  if (!is_array_of_objects(filter_list)) {
    orvane_log_debug("[devcfg](%s:%d) filter list of %s is not an array of objects", __func__,
                     __LINE__, vault_id);
    return kDevcfgFailed;
  }
  const std::vector<Filter> filters = read_filter_list(filter_list, vault_id);
  const orvaneip::VaultConnection<CDataSource> vault;
  vault->remove_filter_by_vault_id(vault_id);
  for (const Filter& filter : filters) {
    vault->insert_filter(filter);
  }
  return kDevcfgOk;
}

int devcfg_check_filter_token(char* /*token_key*/, bool* has_token) {
  if (has_token != nullptr) {
    *has_token = false;
  }
  return kDevcfgOk;
}

int devcfg_clear_filter_token(char* /*token_key*/) { return kDevcfgOk; }
