// Which engine a vault database has.
#pragma once

#include <memory>

#include "platform/embedded/vault/engine.h"
#include "platform/embedded/vault/vault_location.h"

namespace orvaneplatform {

// Opens the database; null when it does not exist. Throws base::Failure.
std::unique_ptr<Engine> open_engine(const VaultLocation& location);

// Creates an empty database unless there is one. Throws base::Failure.
void create_database(const VaultLocation& location);

}  // namespace orvaneplatform
