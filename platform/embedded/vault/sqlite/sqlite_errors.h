// SQLite's errors as failures of the vault database.
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <string>

#include "base/failure.h"

namespace orvaneplatform {

// Part of the message of the trigger that refuses a data source too many. Stored in schemas: it
// must not change.
inline constexpr char kVaultFullMessage[] = "the vault list is full";

// Returns the failure that `error`, just thrown by an operation on `handle`, is: its status, and
// SQLite's words after the name of the database. `handle` may be null.
base::Failure failure_of(const SQLite::Exception& error, sqlite3* handle, const std::string& name);

}  // namespace orvaneplatform
