// Changing many data sources, with a way back.
#pragma once

#include <string>
#include <vector>

#include "cli/vault.h"

namespace devcfg {

// What an import removes and what it adds, in this order.
struct VaultChange {
  std::vector<DataSource> removed;
  std::vector<DataSource> added;
};

// Makes the change, one data source after the other. When one fails, those added are removed again
// and those removed are stored again, and a Refusal tells what happened; after a process killed on
// the way the change is made in part.
void apply(const VaultChange& change);

}  // namespace devcfg
