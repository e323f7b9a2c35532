// The filters of a device, as read from the rule file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "textfilter/rule.h"

// Sizes of names and identifiers in bytes, terminator included. A longer text is cut to fit.
inline constexpr std::size_t kFilterNameBytes = 256;
inline constexpr std::size_t kFilterDeviceIdBytes = 256;

// One named filter. A value that owns its rules: a copy copies every rule, a move transfers them.
// The default constructor leaves `name` and `enable` unset; `filter made{};` zeroes them.
struct filter {
  char name[kFilterNameBytes];
  std::int32_t enable;  // 0: disabled
  std::vector<rule> rule_list;
};

// All filters of one device.
struct dev_filter {
  char device_id[kFilterDeviceIdBytes];
  std::vector<filter> filter_list;
};
