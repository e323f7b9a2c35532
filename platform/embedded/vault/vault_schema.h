// The tables of the vault database.
#pragma once

#include <soci/soci.h>

namespace orvaneplatform {

// The schema version that this code writes.
inline constexpr int kSchemaVersion = 1;

// Upgrades the stored schema from an older version (0: an empty database) to kSchemaVersion, step
// by step in one transaction.
void upgrade_schema(soci::session& sql);

}  // namespace orvaneplatform
