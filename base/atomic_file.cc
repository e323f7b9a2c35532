#include "base/atomic_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "base/directory.h"
#include "base/failure.h"
#include "base/file_descriptor.h"

namespace base {
namespace {

// Opens PATH.saving, which no other writer uses.
int open_under_lock(std::string& name) {
  name += ".saving";
  unlink(name.c_str());
  return open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
}

// Opens a file with a unique name and mode 0600.
int open_unique(std::string& name) {
  name += ".XXXXXX";
  return mkostemp(name.data(), O_CLOEXEC);
}

// The new file. It is removed unless it replaces the file at `path`.
class NewFile {
 public:
  NewFile(const std::string& path, int (*open_new)(std::string& name))
      : path_(path), directory_(parent_directory(path)), name_(path), file_(open_new(name_)) {
    require(file_.is_open());
  }
  ~NewFile() {
    if (!has_replaced_) {
      unlink(name_.c_str());
    }
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  // The mode comes last: a change of the owner may remove permissions.
  void copy_owner_and_mode(const struct stat& old) {
    struct stat fresh {};
    require(fstat(file_.get(), &fresh) == 0);
    const bool same_owner = fresh.st_uid == old.st_uid && fresh.st_gid == old.st_gid;
    require((same_owner || fchown(file_.get(), old.st_uid, old.st_gid) == 0) &&
            fchmod(file_.get(), old.st_mode & 07777) == 0);
  }

  // Other users may not read it, whatever the umask.
  void set_private() { require(fchmod(file_.get(), 0600) == 0); }

  void set_owner() { inherit_owner(file_.get(), name_); }

  void write(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t count = ::write(file_.get(), bytes.data(), bytes.size());
      require(count >= 0 || errno == EINTR);
      bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    require(fsync(file_.get()) == 0 && file_.close_now() == 0);
  }

  void replace() {
    require(std::rename(name_.c_str(), path_.c_str()) == 0);
    has_replaced_ = true;
    sync_directory(directory_);
  }

  // Returns false when the file at `path` exists.
  bool create() {
    bool created = link(name_.c_str(), path_.c_str()) == 0;
    if (!created && errno == EPERM) {  // a file system without hard links
      created = has_replaced_ =
          renameat2(AT_FDCWD, name_.c_str(), AT_FDCWD, path_.c_str(), RENAME_NOREPLACE) == 0;
    }
    require(created || errno == EEXIST);
    if (created) {
      sync_directory(directory_);
    }
    return created;
  }

 private:
  void require(bool done) const {
    if (!done) {
      throw_system_failure(path_, errno);
    }
  }

  const std::string& path_;
  std::filesystem::path directory_;  // before the file: allocating must not fail after its renaming
  std::string name_;
  FileDescriptor file_;
  bool has_replaced_ = false;
};

}  // namespace

void replace_file(const std::string& path, std::string_view bytes, const struct stat& old) {
  NewFile file(path, open_under_lock);
  file.copy_owner_and_mode(old);
  file.write(bytes);
  file.replace();
}

void write_file(const std::string& path, std::string_view bytes) {
  NewFile file(path, open_unique);
  file.set_private();
  file.write(bytes);
  file.replace();
}

bool create_file(const std::string& path, std::string_view bytes) {
  NewFile file(path, open_unique);
  file.set_private();
  file.set_owner();
  file.write(bytes);
  return file.create();
}

}  // namespace base
