// The whole vault as one JSON document, as `export` writes and `import` reads it:
//   {"vault_list": [{"vault_id", "vault_name", "description", "type": string, "index": int,
//     "enable": boolean, "last_recv_time": int (milliseconds since 1970, UTC; 0: none),
//     "filter": [{"type": int, "target", "result", "name": string}],
//     "channel_guid_list": [{"channel_index": int, "guid", "name": string}]}]}
// Files of this form are kept as backups: it must not change.
#pragma once

#include <vector>

#include "cli/json.h"
#include "cli/json_checks.h"
#include "cli/vault.h"

namespace devcfg {

Json vault_document(const std::vector<DataSource>& data_sources);

// Returns the data sources of a document. What is wrong in the document itself is added to
// `problems`; then the result must not be used.
std::vector<DataSource> read_vault_document(json_object* document, Problems& problems);

}  // namespace devcfg
