#include "platform/embedded/files.h"

#include <fcntl.h>

#include <cerrno>

namespace orvaneplatform {

std::filesystem::path folder_of(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.parent_path() : ".";
}

int synchronise_folder(const std::filesystem::path& folder) {
  const FileDescriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return descriptor.is_open() && fsync(descriptor.get()) == 0 ? 0 : errno;
}

}  // namespace orvaneplatform
