// The two files of the synchronisation of built-in devices, as types that cannot be confused.
#pragma once

#include <string>

#include "base/fixed_paths.h"
#include "devtree/internal/config_file.h"
#include "devtree/internal/node_list.h"
#include "devtree/internal/tree_values.h"

namespace orvaneip {

// The built-in list; its entries are numbered from 0. Absent values read as kNoValue.
class BuiltinList : public ConfigFile {
 public:
  explicit BuiltinList(TCfgMode mode) : ConfigFile(mode, base::kBuiltinListPath) {}

  int entry_count() const;
  std::string key(int entry) const;

  // Returns true when the entry's mark reads as true.
  bool marks_builtin(int entry) const;

  // Returns the value as a node gets it: cut to kBuiltinValueBytes - 1 bytes or, where that would
  // split a character of UTF-8, up to 3 fewer.
  std::string value(int entry, const char* name) const;
};

// The device tree.
class DeviceTree : public ConfigFile {
 public:
  explicit DeviceTree(TCfgMode mode) : ConfigFile(mode, base::kDeviceTreePath) {}

  // Returns the whole node list, whatever its length; kNoValue when it does not exist.
  std::string node_list() const;

  std::string key(const std::string& node) const;
  bool is_builtin(const std::string& node) const;

  // Returns true when there is a value at the path, below the top element, and it equals `value`.
  template <typename... Names>
  bool holds(const std::string& value, Names... path) const {
    return holds_value(handle(), value, kDeviceTop, path...);
  }

  template <typename... Names>
  void store(const std::string& value, Names... path) {
    xmlcfg_set_str(handle(), value.c_str(), kDeviceTop, path..., nullptr);
  }

  void remove(const std::string& node) {
    xmlcfg_remove(handle(), kDeviceTop, node.c_str(), nullptr);
  }
};

}  // namespace orvaneip
