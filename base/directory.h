// Directories, and what it takes for an entry of one to survive a power loss.
#pragma once

#include <filesystem>

namespace base {

// Returns the directory that holds `path`; "." for a bare name.
std::filesystem::path parent_directory(const std::filesystem::path& path);

// Makes the entries of the directory durable: a new, replaced or removed file survives a power loss
// only after that. Throws Failure.
void sync_directory(const std::filesystem::path& directory);

// Creates the directory and those above it that are missing, durably, with mode 0755. Throws
// Failure.
void make_directories(const std::filesystem::path& directory);

}  // namespace base
