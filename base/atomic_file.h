// Writes a whole file in one step: a reader finds the old contents or the new ones, also after a
// crash. The bytes are written to a new file in the same directory, which is synced and renamed;
// then the directory is synced. All functions throw Failure, and leave no new file then.
//
// `path` must not be a symbolic link: the link itself would be replaced.
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

namespace base {

// Replaces the file at `path`, whose status is `old`, and keeps its owner and mode. The new file is
// PATH.saving until it is renamed. The caller holds the lock of the file (base/file_lock.h), so an
// existing PATH.saving was left by a writer that was killed; it is removed.
void replace_file(const std::string& path, std::string_view bytes, const struct stat& old);

// Creates or replaces the file at `path`; the new file has mode 0600 whatever the umask. Several
// writers need no lock, because each new file has a unique name until it is renamed: the last
// writer wins.
void write_file(const std::string& path, std::string_view bytes);

// Creates the file at `path` with mode 0600 whatever the umask, and with the owner that
// inherit_owner (base/directory.h) gives it. Returns false, and changes nothing, when it exists.
bool create_file(const std::string& path, std::string_view bytes);

}  // namespace base
