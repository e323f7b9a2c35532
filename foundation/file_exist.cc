#include "foundation/file_exist.h"

#include <cstdio>
#include <memory>

#include "platform/log_sinks.h"

bool check_file_exist(char* path) {
  const auto close = [](std::FILE* file) { std::fclose(file); };
  if (path != nullptr && std::unique_ptr<std::FILE, decltype(close)>(std::fopen(path, "re"))) {
    return true;
  }
  orvane_log_debug("[libdevcfg] %s, File %s not exist", __func__,
                   path != nullptr ? path : "(null)");
  return false;
}
