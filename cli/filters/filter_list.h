// Filter lists, as JSON and as records.
#pragma once

#include <string>
#include <vector>

#include "cli/json.h"
#include "cli/json_checks.h"
#include "cli/vault.h"

namespace devcfg {

using metadata_vault::Filter;

// Longest target or result in bytes: filtering would cut a longer one.
inline constexpr std::size_t kMaxFilterTextBytes = kRuleTextBytes - 1;

// Reads the filter list at `where` ("": the document itself) as the library would store it: a
// missing "type" is 0, a missing string empty. Anything else than a list of {"type": int, "target",
// "result", "name": string} is a problem, and so is what filtering would not apply: a type of -1
// and a string that it would cut. After a problem the result must not be used.
std::vector<Filter> read_filter_list(json_object* filter_list, const std::string& where,
                                     Problems& problems);

// {"type", "target", "result", "name"}
json_object* filter_object(const Filter& filter);

// Prints the filters as a table.
void print_filters(const std::vector<Filter>& filters);

bool same_filters(const std::vector<Filter>& left, const std::vector<Filter>& right);

}  // namespace devcfg
