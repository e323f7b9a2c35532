#include "platform/embedded/vault/vault_location.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "base/directory.h"
#include "base/failure.h"
#include "base/fixed_paths.h"
#include "platform/vault_status.h"

namespace orvaneplatform {
namespace {

using metadata_vault::kVaultUnreachable;

std::string vault_setting() {
  const char* setting = std::getenv("ORVANE_VAULT");
  return setting != nullptr ? setting : "";
}

bool is_server(const std::string& setting) {
  return setting.starts_with("postgresql://") || setting.starts_with("postgres://");
}

std::filesystem::path path_of(const std::string& setting) {
  if (setting.empty()) {
    return base::kDefaultVaultPath;
  }
  // "./" keeps SQLite from giving the path a meaning of its own (":memory:").
  return setting.starts_with('/') ? setting : "./" + setting;
}

// `path` exists: another process has just created it, or it is a symbolic link to a file that does
// not exist.
void create_link_target(const std::filesystem::path& path) {
  std::error_code no_link;
  const std::filesystem::path target = std::filesystem::read_symlink(path, no_link);
  if (!no_link) {
    create_database_file(base::parent_directory(path) / target);
  }
}

void create_empty_file(const std::filesystem::path& path) {
  const std::filesystem::path directory = base::parent_directory(path);
  base::make_directories(directory);
  // mknod instead of open: closing a descriptor would release the locks that another thread of this
  // process may hold on the file by then.
  if (mknod(path.c_str(), S_IFREG | kDatabaseFileMode, 0) == 0) {
    base::sync_directory(directory);
  } else if (errno == EEXIST) {
    create_link_target(path);
  } else {
    base::throw_system_failure(path, errno);
  }
}

}  // namespace

std::string vault_file_path() {
  const std::string setting = vault_setting();
  if (is_server(setting)) {
    throw base::Failure("", "PostgreSQL is not built in", metadata_vault::kVaultUnsupported);
  }
  return path_of(setting);
}

std::string event_file_path() {
  const std::string setting = vault_setting();
  const std::filesystem::path vault = path_of(is_server(setting) ? "" : setting);
  const char* const name = vault.filename() == kEventFile ? kOtherEventFile : kEventFile;
  return base::parent_directory(vault) / name;
}

void create_database_file(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) {
    return;
  }
  if (errno != ENOENT) {
    base::throw_system_failure(path, errno, kVaultUnreachable);
  }
  try {
    create_empty_file(path);
  } catch (const base::Failure& failure) {
    throw base::Failure(path, failure.reason(), kVaultUnreachable);
  }
}

}  // namespace orvaneplatform
