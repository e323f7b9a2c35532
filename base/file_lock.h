// The lock of those who change a file: an advisory lock on a file of its own beside it, since the
// file itself is replaced by each save.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "base/file_descriptor.h"

namespace base {

// Held until it is destroyed, or its process ends. It keeps threads of one process apart as well.
// The lock file stays: removing it would let two holders in.
class FileLock {
 public:
  static constexpr int kWaitMs = 10'000;

  // Waits at most kWaitMs for the lock on PATH.lock. A lock file that is missing is created, with
  // the permissions and, where allowed, the owner of `like`. On failure nothing, and errno, which
  // is ETIMEDOUT when another one held the lock all the time.
  static std::optional<FileLock> take(const std::string& path, const struct stat& like);

 private:
  explicit FileLock(FileDescriptor file) : file_(std::move(file)) {}

  FileDescriptor file_;
};

}  // namespace base
