// Planning the changes that make a device tree match a built-in list. Nothing is stored here.
#pragma once

#include <string>

#include "devtree/builtin_devices.h"
#include "devtree/internal/builtin_files.h"

namespace orvaneip {

struct BuiltinPlan {
  BuiltinChanges changes;
  std::string node_list;  // as it is to be stored
};

// Returns the changes, and logs each. The files are open.
BuiltinPlan plan_builtin(const BuiltinList& builtin_list, const DeviceTree& device_tree);

}  // namespace orvaneip
