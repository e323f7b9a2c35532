// The references of the vault calls: the same work on the same file through SQLite's C interface.
#pragma once

#include <string>

struct json_object;

namespace bench {

// Opens the file, looks one data source up, closes. Returns true when it exists.
bool bare_exists(const std::string& database, const std::string& vault_id);

// Opens the file, runs the three sorted queries, closes. Returns the document of
// devcfg_get_all_device; the caller frees it.
json_object* bare_listing(const std::string& database);

}  // namespace bench
