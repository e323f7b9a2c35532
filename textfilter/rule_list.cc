#include "textfilter/rule_list.h"

#include <cstring>
#include <string>

#include "foundation/result_codes.h"
#include "platform/log_sinks.h"
#include "platform/vault_database.h"
#include "vault/internal/vault_connection.h"

namespace {

void fill_text(char (&field)[kRuleTextBytes], const std::string& text) {
  std::memcpy(field, text.c_str(), strnlen(text.c_str(), kRuleTextBytes - 1));
}

void append_rule(const metadata_vault::Filter& filter, std::vector<rule>& rules) {
  rule& added = rules.emplace_back();
  added.type = filter.type;
  fill_text(added.result, filter.result);
  fill_text(added.target, filter.target);
}

}  // namespace

int get_rule_list(char* vault_id, std::vector<rule>& rules) {
  if (vault_id == nullptr || *vault_id == '\0') {
    return kDevcfgFailed;
  }
  const orvaneip::VaultConnection<CDataSource> vault;
  std::vector<metadata_vault::Filter> filters;
  vault->query_filter(vault_id, filters);
  for (const metadata_vault::Filter& filter : filters) {
    if (filter.type == metadata_vault::kNoFilterType) {
      orvane_log_debug("[libzelip](%s:%d) Get rule type failed", __func__, __LINE__);
      return kDevcfgRuleTypeMissing;
    }
    append_rule(filter, rules);
  }
  return kDevcfgOk;
}
