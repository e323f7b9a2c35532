#include "tests/support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace test {

TempFolder::TempFolder() : path_(std::filesystem::temp_directory_path() / "orvaneip-test-XXXXXX") {
  if (mkdtemp(path_.data()) == nullptr) {
    throw std::runtime_error("no temporary folder: " + path_);
  }
}

TempFolder::~TempFolder() { std::filesystem::remove_all(path_); }

TempVault::TempVault() { setenv("ORVANE_VAULT", database().c_str(), 1); }

std::string read_file(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw std::runtime_error("cannot read " + path);
  }
  return {std::istreambuf_iterator<char>(file), {}};
}

void write_file(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  if (!(file << bytes).flush()) {
    throw std::runtime_error("cannot write " + path);
  }
}

}  // namespace test
