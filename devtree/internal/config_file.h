// An open configuration file, for the length of one call.
#pragma once

#include <utility>

#include "platform/config_tree.h"

namespace orvaneip {

class ConfigFile {
 public:
  ConfigFile(TCfgMode mode, const char* path) : mode_(mode), handle_(xmlcfg_open(mode, path)) {}
  // Drops changes that close() has not saved: they may be incomplete.
  ~ConfigFile() { close(mode_ == kCfgRead); }
  ConfigFile(const ConfigFile&) = delete;
  ConfigFile& operator=(const ConfigFile&) = delete;

  bool is_open() const { return handle_ != nullptr; }
  void* handle() const { return handle_; }

  // Saves the changes. Returns false when that failed.
  bool close() { return close(true); }

 private:
  bool close(bool save) {
    void* handle = std::exchange(handle_, nullptr);
    return handle == nullptr || xmlcfg_close(handle, save);
  }

  TCfgMode mode_;
  void* handle_;
};

}  // namespace orvaneip
