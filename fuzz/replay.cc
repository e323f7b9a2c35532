// Replaces libFuzzer for compilers that do not have it: runs a fuzzer's function on inputs that
// exist already. Arguments: files, and directories of files. Nothing is written.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/temp_directory.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" [[gnu::weak]] int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace {

using std::filesystem::path;

void append_files(const path& input, std::vector<path>& files) {
  if (is_directory(input)) {
    files.insert(files.end(), std::filesystem::directory_iterator(input), {});
  } else {
    files.push_back(input);
  }
}

// A fault ends the program: the last name printed is its input's.
void run(const path& file) {
  std::printf("%s\n", file.c_str());
  std::fflush(stdout);
  const std::string bytes = test::read_file(file);
  alarm(SECONDS_PER_INPUT);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  alarm(0);
}

}  // namespace

int main(int argc, char** argv) {
  if (LLVMFuzzerInitialize != nullptr) {
    LLVMFuzzerInitialize(&argc, &argv);
  }
  std::vector<path> files;
  for (int i = 1; i < argc; ++i) {
    append_files(argv[i], files);
  }
  for (const path& file : files) {
    run(file);
  }
  std::printf("%zu inputs\n", files.size());
  return files.empty() ? 1 : 0;
}
