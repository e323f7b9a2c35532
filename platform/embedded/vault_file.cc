#include "platform/embedded/vault_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

namespace orvaneplatform {
namespace {

class FileDescriptor {
 public:
  explicit FileDescriptor(int value) : value_(value) {}
  ~FileDescriptor() {
    if (value_ >= 0) {
      close(value_);
    }
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  bool is_open() const { return value_ >= 0; }
  int get() const { return value_; }

 private:
  int value_;
};

std::filesystem::path folder_of(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.parent_path() : ".";
}

// A new entry of a folder survives a power loss once the folder itself is synchronised.
int synchronise_folder(const std::filesystem::path& folder) {
  const FileDescriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return descriptor.is_open() && fsync(descriptor.get()) == 0 ? 0 : errno;
}

int create_folders(const std::filesystem::path& folder) {
  struct stat status {};
  if (stat(folder.c_str(), &status) == 0) {
    return 0;
  }
  const std::filesystem::path parent = folder_of(folder);
  if (const int error = create_folders(parent); error != 0) {
    return error;
  }
  if (mkdir(folder.c_str(), 0755) != 0) {
    return errno == EEXIST ? 0 : errno;
  }
  return synchronise_folder(parent);
}

// `path` exists: made by another process meanwhile, or a symbolic link to what does not exist.
int create_link_target(const std::filesystem::path& path) {
  std::error_code no_link;
  const std::filesystem::path target = std::filesystem::read_symlink(path, no_link);
  return no_link ? 0 : create_vault_file(folder_of(path) / target);
}

}  // namespace

std::optional<std::string> vault_file_path() {
  const char* setting = std::getenv("ORVANE_VAULT");
  if (setting == nullptr || *setting == '\0') {
    return ORVANEIP_ROOT "/var/lib/orvane/vault.db";
  }
  const std::string name = setting;
  if (name.starts_with("postgresql://") || name.starts_with("postgres://")) {
    return std::nullopt;
  }
  // A path that cannot be taken for one of the names that SQLite gives a meaning (":memory:").
  return name.starts_with('/') ? name : "./" + name;
}

int create_vault_file(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) {
    return 0;
  }
  if (errno != ENOENT) {
    return errno;
  }
  const std::filesystem::path folder = folder_of(path);
  if (const int error = create_folders(folder); error != 0) {
    return error;
  }
  // Not by opening it: closing the descriptor would drop the locks that another thread of this
  // process may have taken on the file by then.
  if (mknod(path.c_str(), S_IFREG | 0600, 0) != 0) {
    return errno == EEXIST ? create_link_target(path) : errno;
  }
  return synchronise_folder(folder);
}

}  // namespace orvaneplatform
