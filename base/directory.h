// Directories, and making their entries survive a power loss.
#pragma once

#include <filesystem>

namespace base {

// Returns the directory that holds `path`; "." for a bare name.
std::filesystem::path parent_directory(const std::filesystem::path& path);

// Makes the entries of the directory durable: only after this call a created, renamed or removed
// file stays so after a power loss. Throws Failure.
void sync_directory(const std::filesystem::path& directory);

// Creates the directory and the missing ones above it, durably, with mode 0755. Throws Failure.
void make_directories(const std::filesystem::path& directory);

}  // namespace base
