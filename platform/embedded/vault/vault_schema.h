// The tables of the vault database.
#pragma once

#include <soci/soci.h>

namespace orvaneplatform {

// The version that this code writes. A stored schema is upgraded step by step, in one transaction.
inline constexpr int kSchemaVersion = 1;

// Brings the stored schema from an older version (0: an empty database) to kSchemaVersion.
void upgrade_schema(soci::session& sql);

}  // namespace orvaneplatform
