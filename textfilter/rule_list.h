// The text filters of a vault as a list of rules.
#pragma once

#include <vector>

#include "platform/export.h"
#include "textfilter/rule.h"

// Appends a rule for each filter of the vault `vault_id`, in stored order, with its `type`,
// `target` and `result`; `name` stays empty and `enable` 0. A longer text is cut to kRuleTextBytes
// - 1 bytes, even within a UTF-8 sequence.
//
// Returns 0, also when the vault has no filters, does not exist or cannot be read; -1 when
// `vault_id` is null or empty; kDevcfgRuleTypeMissing when a filter has no type: the rules of the
// filters before it are in the list, it and the ones after it are not.
ORVANEIP_API int get_rule_list(char* vault_id, std::vector<rule>& rules);
