#include "base/directory.h"

#include <fcntl.h>

#include <cerrno>

#include "base/file_descriptor.h"

namespace base {

std::filesystem::path parent_directory(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.parent_path() : ".";
}

int sync_directory(const std::filesystem::path& directory) {
  const FileDescriptor descriptor(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return descriptor.is_open() && fsync(descriptor.get()) == 0 ? 0 : errno;
}

}  // namespace base
