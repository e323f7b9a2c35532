#include "platform/embedded/tree/tree_save.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "base/directory.h"
#include "base/failure.h"
#include "base/file_descriptor.h"
#include "platform/log_sinks.h"

namespace orvaneplatform {
namespace {

// The permissions come last: a change of the owner may take some away.
bool take_over(int file, const struct stat& old) {
  struct stat fresh {};
  if (fstat(file, &fresh) != 0) {
    return false;
  }
  const bool same_owner = fresh.st_uid == old.st_uid && fresh.st_gid == old.st_gid;
  return (same_owner || fchown(file, old.st_uid, old.st_gid) == 0) &&
         fchmod(file, old.st_mode & 07777) == 0;
}

bool write_fully(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(file, bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) {
      return false;
    }
    bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
  }
  return true;
}

// 0, or the errno of what failed.
int write_new_file(const std::string& name, const TreeText& text, const struct stat& old) {
  base::FileDescriptor file(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  const bool written =
      file.is_open() && take_over(file.get(), old) && write_fully(file.get(), text.before) &&
      write_fully(file.get(), text.changed) && write_fully(file.get(), text.after) &&
      fsync(file.get()) == 0 && file.close_now() == 0;
  return written ? 0 : errno;
}

int write_and_rename(const std::string& name, const std::string& path, const TreeText& text,
                     const struct stat& old) {
  unlink(name.c_str());
  int error = write_new_file(name, text, old);
  if (error == 0 && std::rename(name.c_str(), path.c_str()) != 0) {
    error = errno;
  }
  if (error != 0) {
    unlink(name.c_str());
  }
  return error;
}

}  // namespace

bool replace_file(const std::string& path, const TreeText& text, const struct stat& old) {
  const std::filesystem::path folder = base::parent_directory(path);  // nothing may throw any more afterwards
  int error = write_and_rename(path + ".saving", path, text, old);
  try {
    if (error == 0) {
      base::sync_directory(folder);
    }
  } catch (const base::Failure&) {
    error = EIO;
  }
  if (error != 0) {
    orvane_log_debug("[cfgtree] saving %s failed: %s", path.c_str(),
                     std::generic_category().message(error).c_str());
  }
  return error == 0;
}

}  // namespace orvaneplatform
