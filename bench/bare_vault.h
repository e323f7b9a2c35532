// The same work on the same file through the bare SQLite interface: what the library is measured
// against.
#pragma once

#include <string>

struct json_object;

namespace bench {

// Opens the file, looks one data source up, closes. True when it exists.
bool bare_exists(const std::string& database, const std::string& vault_id);

// Opens the file, makes the three sorted queries, builds the document of devcfg_get_all_device,
// closes.
json_object* bare_listing(const std::string& database);

}  // namespace bench
