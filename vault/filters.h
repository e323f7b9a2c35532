// The filter list of a data source, and the filter tokens.
#pragma once

#include "platform/export.h"

struct json_object;

// Replaces the whole filter list of the data source `vault_id` with `filter_list`, a JSON array of
// {"type": int, "target", "result", "name": string}. A missing "type" is 0, a missing string empty;
// other JSON types are read as json-c converts them. The data source need not exist.
//
// Returns 0; kDevcfgVaultIdMissing when `vault_id` is null or empty; -1 and a log line, with the
// stored filters unchanged, when `filter_list` is not an array of objects. Each filter is stored by
// itself: a process killed during the call leaves those stored so far; call again. A change that
// the database cannot store is logged there and not reported here.
ORVANEIP_API int devcfg_modify_filter(char* vault_id, json_object* filter_list);

// There are no filter tokens: writes false to `has_token` (unless it is null) and returns 0.
ORVANEIP_API int devcfg_check_filter_token(char* token_key, bool* has_token);

// There are no filter tokens: returns 0.
ORVANEIP_API int devcfg_clear_filter_token(char* token_key);
