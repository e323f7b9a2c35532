// A device tree that a command works on.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "orvaneip.h"

namespace devcfg {

// Programs read this value as "no value".
inline constexpr char kNoValue[] = "NULL";

class DeviceTreeFile {
 public:
  // Throws CommandError when the file cannot be opened as a tree.
  DeviceTreeFile(TCfgMode mode, const std::string& path);
  ~DeviceTreeFile();
  DeviceTreeFile(const DeviceTreeFile&) = delete;
  DeviceTreeFile& operator=(const DeviceTreeFile&) = delete;

  void* handle() const { return handle_; }

  // Changes that are not saved are lost. Throws CommandError when they cannot be saved.
  void save();

 private:
  std::string path_;
  void* handle_;
};

// Returns the names in the list at `path`, empty ones included.
template <typename... Names>
std::vector<std::string> listed_names(const DeviceTreeFile& tree, Names... path) {
  char list[kNodeListBytes];
  xmlcfg_get_str(tree.handle(), kNoValue, list, sizeof(list), path..., nullptr);
  return std::string(list) != kNoValue ? split(list, ',') : std::vector<std::string>();
}

// Returns the names of the nodes in the device tree, in list order.
std::vector<std::string> node_names(const DeviceTreeFile& tree);

// Returns the number as "device_%03d".
std::string node_name(int number);

// Returns the number by which programs know a node, which follows the first "_" of its name;
// nothing when that is not a number.
std::optional<int> node_number(const std::string& name);

}  // namespace devcfg
