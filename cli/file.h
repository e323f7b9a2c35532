// Files of the C library as values.
#pragma once

#include <cstdio>
#include <memory>

namespace devcfg {

struct FileClose {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileClose>;

}  // namespace devcfg
