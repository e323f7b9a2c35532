// Files and folders of the embedded platform.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <utility>

namespace orvaneplatform {

class FileDescriptor {
 public:
  explicit FileDescriptor(int value) : value_(value) {}
  ~FileDescriptor() { close_now(); }
  FileDescriptor(FileDescriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}

  bool is_open() const { return value_ >= 0; }
  int get() const { return value_; }

  // What close() returns: a file system may report a failed write only then.
  int close_now() { return value_ >= 0 ? close(std::exchange(value_, -1)) : 0; }

 private:
  int value_;
};

// The folder that `path` stands in; "." for a bare name.
std::filesystem::path folder_of(const std::filesystem::path& path);

// A new entry of a folder survives a power loss once the folder itself is synchronised. 0, or the
// errno of what failed.
int synchronise_folder(const std::filesystem::path& folder);

}  // namespace orvaneplatform
