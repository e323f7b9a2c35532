#include "base/directory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "base/failure.h"
#include "base/file_descriptor.h"

namespace base {

std::filesystem::path parent_directory(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.parent_path() : ".";
}

void sync_directory(const std::filesystem::path& directory) {
  const FileDescriptor descriptor(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor.is_open() || fsync(descriptor.get()) != 0) {
    throw_system_failure(directory, errno);
  }
}

void inherit_owner(const std::filesystem::path& path) {
  if (geteuid() != 0) {
    return;
  }
  struct stat status {};
  if (stat(parent_directory(path).c_str(), &status) != 0 ||
      lchown(path.c_str(), status.st_uid, status.st_gid) != 0) {
    throw_system_failure(path, errno);
  }
}

void make_directories(const std::filesystem::path& directory) {
  constexpr mode_t kMode = 0755;
  struct stat status {};
  if (stat(directory.c_str(), &status) == 0) {
    return;
  }
  const std::filesystem::path parent = parent_directory(directory);
  make_directories(parent);
  if (mkdir(directory.c_str(), kMode) == 0) {
    // mkdir applies the umask.
    if (chmod(directory.c_str(), kMode) != 0) {
      throw_system_failure(directory, errno);
    }
    inherit_owner(directory);
    sync_directory(parent);
  } else if (errno != EEXIST) {
    throw_system_failure(directory, errno);
  }
}

}  // namespace base
