#include "platform/command_runner.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <vector>

#include "platform/log_sinks.h"

namespace {

using Arguments = std::vector<char*>;

// Closes all descriptors of the child but standard input, output and error.
class FileActions {
 public:
  FileActions() : error_(posix_spawn_file_actions_init(&actions_)) {
    if (error_ == 0) {
      error_ = posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
    }
  }
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  int error() const { return error_; }
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
  int error_;
};

// Gives the child no blocked signals and the default action for every signal.
class Attributes {
 public:
  Attributes() {
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~Attributes() { posix_spawnattr_destroy(&attributes_); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

// Starts the program. Returns 0 or the errno of the failure.
int start(pid_t& child, const Arguments& arguments) {
  const FileActions actions;
  if (actions.error() != 0) {
    return actions.error();
  }
  const Attributes attributes;
  return posix_spawn(&child, arguments.front(), actions.get(), attributes.get(), arguments.data(),
                     environ);
}

// Returns the status word of the child, or -1.
int wait_for(pid_t child) {
  int status = 0;
  pid_t ended = 0;
  do {
    ended = waitpid(child, &status, 0);
  } while (ended < 0 && errno == EINTR);
  return ended == child ? status : -1;
}

int run(const Arguments& arguments) {
  pid_t child = 0;
  if (const int error = start(child, arguments); error != 0) {
    orvane_log_debug("[cmdrun] %s cannot be started: %s", arguments.front(),
                     strerrordesc_np(error));
    return -1;
  }
  return wait_for(child);
}

}  // namespace

int vorn_exec(int /*zero_1*/, int /*zero_2*/, int /*zero_3*/, const char* path, ...) {
  if (path == nullptr) {
    return -1;
  }
  // posix_spawn does not change the arguments, although its parameter is not const.
  Arguments arguments = {const_cast<char*>(path)};
  va_list list;
  va_start(list, path);
  while (arguments.back() != nullptr) {
    arguments.push_back(va_arg(list, char*));
  }
  va_end(list);
  return run(arguments);
}
