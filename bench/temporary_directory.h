// A new directory below the system's temporary one, removed with all its files by the destructor.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "bench/ratio.h"

namespace bench {

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    path_ = std::filesystem::temp_directory_path() / "orvaneip-bench-XXXXXX";
    require(mkdtemp(path_.data()) != nullptr, "creating a temporary directory");
  }
  ~TemporaryDirectory() { std::filesystem::remove_all(path_); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

}  // namespace bench
