// What brings a device tree into line with a built-in list. Only reads, and logs what is to be
// done.
#pragma once

#include <string>
#include <vector>

#include "devtree/builtin_devices.h"

namespace orvaneip {

struct BuiltinPlan {
  BuiltinChanges changes;
  std::string node_list;  // as it is to be stored
};

// The trees are open handles.
BuiltinPlan plan_builtin(void* builtin_list, void* device_tree);

// The value of an entry as a node gets it: cut to 1,023 bytes or, where that would split a
// character of UTF-8, up to 3 fewer; "NULL" when it is absent.
std::string entry_value(void* builtin_list, int entry, const char* key);

}  // namespace orvaneip
