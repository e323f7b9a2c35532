// Directories, and making their entries survive a power loss.
#pragma once

#include <filesystem>

namespace base {

// Returns the directory that holds `path`; "." for a bare name.
std::filesystem::path parent_directory(const std::filesystem::path& path);

// Makes the entries of the directory durable: only after this call a created, renamed or removed
// file stays so after a power loss. Throws Failure.
void sync_directory(const std::filesystem::path& directory);

// Gives a file or directory that this process has just created, and opened as `descriptor`, the
// owner and group of the directory that `path` is in, when the process is root's: the users of that
// directory are not locked out. Without effect for another user. Throws Failure.
void inherit_owner(int descriptor, const std::filesystem::path& path);

// Creates the directory and the missing ones above it, durably, with mode 0755 whatever the umask,
// and with the owner that inherit_owner gives them. Throws Failure.
void make_directories(const std::filesystem::path& directory);

}  // namespace base
