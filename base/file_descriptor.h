// A file descriptor that closes itself.
#pragma once

#include <unistd.h>

#include <utility>

namespace base {

class FileDescriptor {
 public:
  explicit FileDescriptor(int value) : value_(value) {}
  ~FileDescriptor() { close_now(); }
  FileDescriptor(FileDescriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}

  bool is_open() const { return value_ >= 0; }
  int get() const { return value_; }

  // Closes the descriptor if it is open, and returns the result of close(): some file systems
  // report a failed write only then.
  int close_now() { return value_ >= 0 ? close(std::exchange(value_, -1)) : 0; }

 private:
  int value_;
};

}  // namespace base
