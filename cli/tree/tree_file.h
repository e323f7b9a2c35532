// A device tree that a command works on.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "orvaneip.h"

namespace devcfg {

// What programs read as "no value".
inline constexpr char kNoValue[] = "NULL";

// The file of the system's device tree.
std::string system_device_tree();

class TreeFile {
 public:
  // Refused when the file cannot be opened as a tree.
  TreeFile(TCfgMode mode, const std::string& path);
  ~TreeFile();
  TreeFile(const TreeFile&) = delete;
  TreeFile& operator=(const TreeFile&) = delete;

  void* handle() const { return handle_; }

  // Changes that are not saved are forgotten. Refused when they cannot be saved.
  void save();

 private:
  std::string path_;
  void* handle_;
};

// The listed node names that have a number, in list order.
std::vector<std::string> node_names(const TreeFile& tree);

// "device_%03d"
std::string node_name(int number);

// The number of "device_007" or "7".
std::optional<int> node_number(const std::string& name);

}  // namespace devcfg
