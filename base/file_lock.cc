#include "base/file_lock.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

#include "base/failure.h"

namespace base {
namespace {

using std::chrono::steady_clock;

// A writer that makes many changes releases the lock only for moments.
constexpr std::chrono::microseconds kLongestPause(1'000);
constexpr int kOpenFlags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;

FileDescriptor open_lock_file(const std::string& name, const struct stat& like) {
  const mode_t permissions = like.st_mode & 0666;
  FileDescriptor created(open(name.c_str(), kOpenFlags | O_CREAT | O_EXCL, permissions));
  if (!created.is_open()) {
    return errno == EEXIST ? FileDescriptor(open(name.c_str(), kOpenFlags)) : std::move(created);
  }
  // Every user who may change the file must be able to lock it; a failure affects only others.
  [[maybe_unused]] const int owner = fchown(created.get(), like.st_uid, like.st_gid);
  [[maybe_unused]] const int mode = fchmod(created.get(), permissions);
  return created;
}

// A lock of the open file description: unlike a process's lock it also keeps threads apart.
bool try_lock(int file) {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return fcntl(file, F_OFD_SETLK, &lock) == 0;
}

bool is_held_elsewhere(int error) { return error == EAGAIN || error == EACCES || error == EINTR; }

[[noreturn]] void throw_lock_file_failure(const std::string& path, int error) {
  throw Failure(path, "its lock file: " + std::generic_category().message(error));
}

}  // namespace

FileLock FileLock::take(const std::string& path, const struct stat& like, int wait_ms) {
  FileDescriptor file = open_lock_file(path + ".lock", like);
  if (!file.is_open()) {
    throw_lock_file_failure(path, errno);
  }
  const auto deadline = steady_clock::now() + std::chrono::milliseconds(wait_ms);
  for (auto pause = std::chrono::microseconds(200); !try_lock(file.get());
       pause = std::min(pause * 2, kLongestPause)) {
    if (!is_held_elsewhere(errno)) {
      throw_lock_file_failure(path, errno);
    }
    if (steady_clock::now() >= deadline) {
      throw Failure(path, "another writer holds its lock for longer than the wait");
    }
    std::this_thread::sleep_for(pause);
  }
  return FileLock(std::move(file));
}

}  // namespace base
