// The lock of a file's writers: an advisory lock on a separate file beside it, since every save
// replaces the file itself.
#pragma once

#include <sys/stat.h>

#include <string>

#include "base/file_descriptor.h"

namespace base {

// Held until it is destroyed or its process ends. It excludes other threads of the process as well.
// The lock file is never removed: that would let two holders in.
class FileLock {
 public:
  // Waits at most `wait_ms` for the lock on PATH.lock, which is created when it is missing, with
  // the permissions and, where allowed, the owner of `like`. Throws Failure, also at the end of the
  // wait.
  static FileLock take(const std::string& path, const struct stat& like, int wait_ms);

 private:
  explicit FileLock(FileDescriptor file) : file_(std::move(file)) {}

  FileDescriptor file_;
};

}  // namespace base
