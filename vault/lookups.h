// Checking whether a data source exists.
#pragma once

#include "platform/export.h"

// Both count the data sources that match exactly, without trimming or case folding; an empty
// argument matches all of them. The count is written only when it is at least 1: set it to 0 before
// the call. They return 0, or -1 when an argument is null; a database that cannot be read counts as
// no match.

ORVANEIP_API int devcfg_check_vault_exist(char* vault_id, int* match_count);

ORVANEIP_API int devcfg_check_vault_name(char* vault_name, int* match_count);
