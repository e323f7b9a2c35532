// Checks and help of the name and the description of a data source.
#pragma once

#include <string>

#include "cli/command_error.h"

namespace devcfg {

// The library stores longer values, but other calls return them cut to these sizes.
inline void check_name(const std::string& name) {
  if (name.empty()) {
    throw CommandError("a name must not be empty");
  }
  if (name.size() >= kVaultNameBytes) {
    throw CommandError("the name is longer than " + std::to_string(kVaultNameBytes - 1) + " bytes");
  }
}

inline void check_description(const std::string& description) {
  if (description.size() >= kDescriptionBytes) {
    throw CommandError("the description is longer than " + std::to_string(kDescriptionBytes - 1) +
                       " bytes");
  }
}

inline std::string name_help() {
  return "The name that people see, up to " + std::to_string(kVaultNameBytes - 1) + " bytes";
}

inline std::string description_help() {
  return "Free text, up to " + std::to_string(kDescriptionBytes - 1) + " bytes";
}

}  // namespace devcfg
