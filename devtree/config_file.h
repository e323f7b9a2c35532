// An open configuration file, for the length of one call.
#pragma once

#include <utility>

#include "platform/config_tree.h"

namespace orvaneip {

class ConfigFile {
 public:
  ConfigFile(TCfgMode mode, const char* path) : handle_(xmlcfg_open(mode, path)) {}
  ~ConfigFile() { close(); }
  ConfigFile(const ConfigFile&) = delete;
  ConfigFile& operator=(const ConfigFile&) = delete;

  bool is_open() const { return handle_ != nullptr; }
  void* handle() const { return handle_; }

  // Saves what was changed. False when that failed.
  bool close() {
    void* handle = std::exchange(handle_, nullptr);
    return handle == nullptr || xmlcfg_close(handle, true);
  }

 private:
  void* handle_;
};

}  // namespace orvaneip
