// The values of a device node, as the commands name them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "orvaneip.h"

namespace devcfg {

struct DeviceField {
  const char* option;  // of `tree add`, and the name in tables and JSON
  const char* meaning;
  const char* path[4];  // below the node, ended by null
  const char* (*text)(const TDeviceInfo& info);
  std::size_t size_bytes;  // of the buffer that programs read it into
};

// All texts but the password, in the order in which they are shown.
const std::vector<DeviceField>& device_fields();

// The password at the source device.
const DeviceField& password_field();

}  // namespace devcfg
