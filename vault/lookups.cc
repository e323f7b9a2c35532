#include "vault/lookups.h"

#include "foundation/result_codes.h"
#include "platform/vault_database.h"
#include "vault/internal/vault_connection.h"

namespace {

void count_matches(const std::string& vault_id, const std::string& vault_name, int& match_count) {
  orvaneip::VaultConnection<CDataSource> vault;
  std::vector<metadata_vault::DataSource> found;
  vault->query_data_source(vault_id, vault_name, found);
  if (!found.empty()) {
    match_count = static_cast<int>(found.size());
  }
}

}  // namespace

int devcfg_check_vault_exist(char* vault_id, int* match_count) {
  if (vault_id == nullptr || match_count == nullptr) {
    return kDevcfgFailed;
  }
  count_matches(vault_id, "", *match_count);
  return kDevcfgOk;
}

int devcfg_check_vault_name(char* vault_name, int* match_count) {
  if (vault_name == nullptr || match_count == nullptr) {
    return kDevcfgFailed;
  }
  count_matches("", vault_name, *match_count);
  return kDevcfgOk;
}
