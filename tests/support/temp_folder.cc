#include "tests/support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace test {

TempFolder::TempFolder() {
  std::string name = std::filesystem::temp_directory_path() / "orvaneip-test-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error("no temporary folder: " + name);
  }
  path_ = name;
}

TempFolder::~TempFolder() { std::filesystem::remove_all(path_); }

TempVault::TempVault() { setenv("ORVANE_VAULT", database().c_str(), 1); }

std::string read_file(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw std::runtime_error("cannot read " + path);
  }
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

void write_file(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  if (!(file << bytes).flush()) {
    throw std::runtime_error("cannot write " + path);
  }
}

}  // namespace test
