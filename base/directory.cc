#include "base/directory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "base/failure.h"
#include "base/file_descriptor.h"

namespace base {
namespace {

constexpr mode_t kDirectoryMode = 0755;

// mkdir has applied the umask. Root never follows a link that another user has put there meanwhile;
// other users may not be allowed to open a directory of mode 0.
void set_mode_and_owner(const std::filesystem::path& directory) {
  if (geteuid() != 0) {
    if (chmod(directory.c_str(), kDirectoryMode) != 0) {
      throw_system_failure(directory, errno);
    }
    return;
  }
  const FileDescriptor opened(
      open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!opened.is_open() || fchmod(opened.get(), kDirectoryMode) != 0) {
    throw_system_failure(directory, errno);
  }
  inherit_owner(opened.get(), directory);
}

}  // namespace

std::filesystem::path parent_directory(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.parent_path() : ".";
}

void sync_directory(const std::filesystem::path& directory) {
  const FileDescriptor descriptor(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor.is_open() || fsync(descriptor.get()) != 0) {
    throw_system_failure(directory, errno);
  }
}

void inherit_owner(int descriptor, const std::filesystem::path& path) {
  if (geteuid() != 0) {
    return;
  }
  struct stat status {};
  if (stat(parent_directory(path).c_str(), &status) != 0 ||
      fchown(descriptor, status.st_uid, status.st_gid) != 0) {
    throw_system_failure(path, errno);
  }
}

void make_directories(const std::filesystem::path& directory) {
  struct stat status {};
  if (stat(directory.c_str(), &status) == 0) {
    return;
  }
  const std::filesystem::path parent = parent_directory(directory);
  make_directories(parent);
  if (mkdir(directory.c_str(), kDirectoryMode) == 0) {
    set_mode_and_owner(directory);
    sync_directory(parent);
  } else if (errno != EEXIST) {
    throw_system_failure(directory, errno);
  }
}

}  // namespace base
