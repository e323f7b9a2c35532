// The tables of the vault database.
#pragma once

#include <string>
#include <vector>

#include "platform/embedded/vault/engine.h"

namespace orvaneplatform {

// The version that this code writes. A stored schema is upgraded step by step, in one transaction.
inline constexpr int kSchemaVersion = 2;

// The first version that has the table of active events.
inline constexpr int kEventSchemaVersion = 2;

// Returns the version of the stored schema, 0 for an empty database. Throws base::Failure when it
// is not a vault's, or newer than kSchemaVersion.
int check_schema(Engine& engine);

// Brings the stored schema from `version` (0: an empty database) to kSchemaVersion.
void upgrade_schema(Engine& engine, int version);

}  // namespace orvaneplatform
