// The file of an SQLite database.
#pragma once

#include <string>

namespace orvaneplatform {

// False when there is no file at `path`, symbolic links followed. Throws base::Failure with
// kVaultUnreachable when that cannot be said, and for what is not a regular file.
bool database_file_exists(const std::string& path);

// Creates an empty file with mode 0600 and the directories above it that are missing, durably,
// unless it exists. Created by root, all of them get the owner and group of the directory that they
// are in. Throws base::Failure with kVaultUnreachable.
void create_database_file(const std::string& path);

}  // namespace orvaneplatform
