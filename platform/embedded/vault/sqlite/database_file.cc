#include "platform/embedded/vault/sqlite/database_file.h"

#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "base/atomic_file.h"
#include "base/directory.h"
#include "base/failure.h"
#include "platform/vault_status.h"

namespace orvaneplatform {
namespace {

using metadata_vault::kVaultUnreachable;

// Of a symbolic link that leads to no file yet, the path that it leads to.
std::filesystem::path target_of(const std::filesystem::path& path) {
  std::error_code not_a_link;
  const std::filesystem::path target = std::filesystem::read_symlink(path, not_a_link);
  return not_a_link ? path : target_of(base::parent_directory(path) / target);
}

}  // namespace

bool database_file_exists(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    if (errno != ENOENT) {
      base::throw_system_failure(path, errno, kVaultUnreachable);
    }
    return false;
  }
  if (!S_ISREG(status.st_mode)) {
    throw base::Failure(path, S_ISDIR(status.st_mode) ? "it is a directory" : "not a regular file",
                        kVaultUnreachable);
  }
  return true;
}

void create_database_file(const std::string& path) {
  try {
    const std::filesystem::path target = target_of(path);
    base::make_directories(base::parent_directory(target));
    // The file is closed before it has its name: closing it later would drop the locks that another
    // thread of this process has taken on it.
    base::create_file(target, "");
  } catch (const base::Failure& failure) {
    throw base::Failure(path, failure.reason(), kVaultUnreachable);
  }
}

}  // namespace orvaneplatform
