// A change of many data sources that is rolled back when a step fails.
#pragma once

#include <string>
#include <vector>

#include "cli/vault.h"

namespace devcfg {

// The data sources that an import removes, and then those that it adds.
struct VaultChange {
  std::vector<DataSource> removed;
  std::vector<DataSource> added;
};

// Makes the change, one data source after the other. When one fails, those added are removed and
// those removed are stored again, and a CommandError says what happened. When the process is killed
// in between, a part of the change remains.
void apply(const VaultChange& change);

}  // namespace devcfg
