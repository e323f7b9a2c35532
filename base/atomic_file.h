// Writing a whole file in one step: whoever opens it, also after a crash, finds what was there
// before or all of the new bytes. The bytes are written to a new file beside it, which is synced
// and takes the name; then the directory is synced. All functions throw Failure, and leave nothing
// beside the file then.
//
// `path` must not be a symbolic link: the link itself would be replaced.
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

namespace base {

// Replaces the file at `path`, whose status is `old`; the new file has its owner and mode. The new
// file is PATH.saving: the caller holds the lock of the file (base/file_lock.h), so one that exists
// was left behind by a writer that was killed, and is removed.
void replace_file(const std::string& path, std::string_view bytes, const struct stat& old);

// Creates or replaces the file at `path`; the new file has mode 0600. The new file has a name of its
// own, so that several writers need no lock: the last one wins.
void write_file(const std::string& path, std::string_view bytes);

// Creates the file at `path` with mode 0600. False, and nothing is changed, when there is one.
bool create_file(const std::string& path, std::string_view bytes);

}  // namespace base
