#include <fcntl.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "base/atomic_file.h"
#include "base/failure.h"
#include "base/file_descriptor.h"
#include "base/fixed_paths.h"
#include "devtree/device_tree.h"
#include "foundation/file_exist.h"
#include "platform/log_sinks.h"

namespace {

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\"?>";
constexpr int kMaxLinks = 40;  // as the kernel follows

// Returns the path without symbolic links at its end, whether or not there is a file.
std::string resolve_links(std::filesystem::path path) {
  std::error_code error;
  for (int i = 0; i < kMaxLinks && std::filesystem::is_symlink(path, error); ++i) {
    path = path.parent_path() / std::filesystem::read_symlink(path, error);
  }
  return path;
}

bool is_readable(const std::string& path) {
  return base::FileDescriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC)).is_open();
}

// Another process may have created the file in the meantime.
bool create(const std::string& path) {
  try {
    return base::create_file(resolve_links(path), kDeclaration) || is_readable(path);
  } catch (const base::Failure&) {
    return false;
  }
}

}  // namespace

bool initial_xml() {
  std::string path = base::kDeviceTreePath;
  if (check_file_exist(path.data()) || create(path)) {
    return true;
  }
  orvane_log_debug("[libdevcfg] %s, File open error: %s", __func__, path.c_str());
  return false;
}
