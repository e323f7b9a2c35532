// A directory for one test, removed with everything in it.
#pragma once

#include <string>

namespace test {

// Lets this process make its temporary directories in memory, in /dev/shm, where that can be
// written: for a test that makes many files and does not test what reaches the disk.
void keep_files_in_memory();

class TempDirectory {
 public:
  TempDirectory();
  ~TempDirectory();
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;

  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

// A TempDirectory whose vault.db is the vault database (ORVANE_VAULT) of this process.
struct TempVault : TempDirectory {
  TempVault();
  std::string database() const { return file("vault.db"); }
};

std::string read_file(const std::string& path);
void write_file(const std::string& path, const std::string& bytes);

}  // namespace test
