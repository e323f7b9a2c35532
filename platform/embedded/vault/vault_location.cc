#include "platform/embedded/vault/vault_location.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "base/directory.h"

namespace orvaneplatform {
namespace {

constexpr char kDefaultVaultFile[] = ORVANEIP_ROOT "/var/lib/orvane/vault.db";

// Other programs look for these names: they must not change.
constexpr char kEventFile[] = "events.db";
constexpr char kOtherEventFile[] = "active_events.db";

int create_folders(const std::filesystem::path& folder) {
  struct stat status {};
  if (stat(folder.c_str(), &status) == 0) {
    return 0;
  }
  const std::filesystem::path parent = base::parent_directory(folder);
  if (const int error = create_folders(parent); error != 0) {
    return error;
  }
  if (mkdir(folder.c_str(), 0755) != 0) {
    return errno == EEXIST ? 0 : errno;
  }
  return base::sync_directory(parent);
}

// `path` exists: made by another process meanwhile, or a symbolic link to what does not exist.
int create_link_target(const std::filesystem::path& path) {
  std::error_code no_link;
  const std::filesystem::path target = std::filesystem::read_symlink(path, no_link);
  return no_link ? 0 : create_vault_file(base::parent_directory(path) / target);
}

}  // namespace

std::optional<std::string> vault_file_path() {
  const char* setting = std::getenv("ORVANE_VAULT");
  if (setting == nullptr || *setting == '\0') {
    return kDefaultVaultFile;
  }
  const std::string name = setting;
  if (name.starts_with("postgresql://") || name.starts_with("postgres://")) {
    return std::nullopt;
  }
  // A path that cannot be taken for one of the names that SQLite gives a meaning (":memory:").
  return name.starts_with('/') ? name : "./" + name;
}

std::string event_file_path() {
  const std::filesystem::path vault = vault_file_path().value_or(kDefaultVaultFile);
  const char* const name = vault.filename() == kEventFile ? kOtherEventFile : kEventFile;
  return base::parent_directory(vault) / name;
}

int create_vault_file(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) {
    return 0;
  }
  if (errno != ENOENT) {
    return errno;
  }
  const std::filesystem::path folder = base::parent_directory(path);
  if (const int error = create_folders(folder); error != 0) {
    return error;
  }
  // Not by opening it: closing the descriptor would drop the locks that another thread of this
  // process may have taken on the file by then.
  if (mknod(path.c_str(), S_IFREG | 0600, 0) != 0) {
    return errno == EEXIST ? create_link_target(path) : errno;
  }
  return base::sync_directory(folder);
}

}  // namespace orvaneplatform
