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

// The names in the list at the path, empty ones included; none when there is no list.
template <typename... Names>
std::vector<std::string> listed_names(const TreeFile& tree, Names... path) {
  char list[4096];
  xmlcfg_get_str(tree.handle(), kNoValue, list, sizeof(list), path..., nullptr);
  return std::string(list) != kNoValue ? split(list, ',') : std::vector<std::string>();
}

// The nodes of the device tree, in list order.
std::vector<std::string> node_names(const TreeFile& tree);

// "device_%03d"
std::string node_name(int number);

// The number by which programs know a node: what follows the first "_" of its name. Nothing when
// that is no number.
std::optional<int> node_number(const std::string& name);

}  // namespace devcfg
