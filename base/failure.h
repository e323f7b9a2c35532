// Why an operation failed.
#pragma once

#include <exception>
#include <string>

namespace base {

// Thrown by functions that work on a file or a database. Caught where it becomes the result of an
// exported function and a log line, or a message of the command.
class Failure : public std::exception {
 public:
  // `path`: the file, or empty. `reason`: why it failed, in words without a full stop. `status`:
  // the number that the exported function returns; 0 when the thrower does not choose it.
  Failure(const std::string& path, const std::string& reason, int status = 0)
      : reason_start_(path.empty() ? 0 : path.size() + 2),
        status_(status),
        words_(path.empty() ? reason : path + ": " + reason) {}

  const char* reason() const { return words_.c_str() + reason_start_; }
  int status() const { return status_; }

  // Returns "PATH: REASON", or the reason alone when there is no path.
  const char* what() const noexcept override { return words_.c_str(); }

 private:
  std::size_t reason_start_;
  int status_;
  std::string words_;
};

// Throws the Failure of a system call on `path`, with the system's message for the errno `error`.
[[noreturn]] void throw_system_failure(const std::string& path, int error, int status = 0);

}  // namespace base
