// Why an operation failed.
#pragma once

#include <exception>
#include <string>

namespace base {

// Thrown by what works on a file or a database; caught where it becomes the result of an exported
// function and a log line, or a message of the command.
class Failure : public std::exception {
 public:
  // `path`: the file, or empty. `reason`: why it failed, in words without a full stop. `status`: the
  // number that the caller is to return, 0 when the thrower has none.
  Failure(const std::string& path, const std::string& reason, int status = 0)
      : reason_start_(path.empty() ? 0 : path.size() + 2),
        status_(status),
        words_(path.empty() ? reason : path + ": " + reason) {}

  const char* reason() const { return words_.c_str() + reason_start_; }
  int status() const { return status_; }

  // "PATH: REASON", or the reason alone.
  const char* what() const noexcept override { return words_.c_str(); }

 private:
  std::size_t reason_start_;
  int status_;
  std::string words_;
};

// Throws the failure of a system call on `path`, with the system's words for the errno `error`.
[[noreturn]] void throw_system_failure(const std::string& path, int error, int status = 0);

}  // namespace base
