// Node names and lists of them.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "devtree/device_tree.h"

namespace orvaneip {

// The top element of the device tree and of the built-in list, and the node list below it.
inline constexpr char kDeviceTop[] = "device";
inline constexpr char kNodeListName[] = "device_node_list";

struct NodeName {
  char text[kNodeNameBytes];
};

// Returns "device_%03d", cut to fit.
NodeName node_name(int number);

// Returns the decimal number after the first "_"; nothing when there is none, or it does not fit an
// int.
std::optional<int> node_number(std::string_view name);

// Splits `list` at "," in place. Empty names are left out.
std::vector<char*> split_in_place(char* list);

}  // namespace orvaneip
