#include "tests/support/temp_directory.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

void test::keep_files_in_memory() {
  constexpr char kInMemory[] = "/dev/shm";
  if (access(kInMemory, W_OK | X_OK) == 0) {
    setenv("TMPDIR", kInMemory, 1);
  }
}

test::TempDirectory::TempDirectory()
    : path_(std::filesystem::temp_directory_path() / "orvaneip-test-XXXXXX") {
  if (mkdtemp(path_.data()) == nullptr) {
    throw std::runtime_error("no temporary directory: " + path_);
  }
}

test::TempDirectory::~TempDirectory() { std::filesystem::remove_all(path_); }

test::TempVault::TempVault() { setenv("ORVANE_VAULT", database().c_str(), 1); }

std::string test::read_file(const std::string& path) {
  std::ifstream file;
  file.exceptions(std::ios::failbit);
  file.open(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void test::write_file(const std::string& path, const std::string& bytes) {
  std::ofstream file;
  file.exceptions(std::ios::failbit | std::ios::badbit);
  file.open(path, std::ios::binary);
  file << bytes << std::flush;
}
