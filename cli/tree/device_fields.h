// The values of a device node, as the commands name them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/tree/device_tree_file.h"

namespace devcfg {

struct DeviceField {
  const char* option;  // of `tree add`, and the name in tables and JSON
  const char* meaning;
  const char* path[4];     // below the node, ended by null
  std::size_t size_bytes;  // of the buffer that programs read it into
};

// Returns all fields but the password, in the order in which they are shown.
const std::vector<DeviceField>& device_fields();

// Returns the field of the password at the source device.
const DeviceField& password_field();

// Returns the value as programs read it; "" when there is no value.
std::string field_text(const DeviceTreeFile& tree, const std::string& node,
                       const DeviceField& field);

}  // namespace devcfg
