// The texts of a data source that a command takes.
#pragma once

#include <string>

#include "cli/command_error.h"

namespace devcfg {

// The library stores longer texts, but hands them to its other callers cut to these sizes.
inline void check_name(const std::string& name) {
  if (name.empty()) {
    throw Refusal("a name must not be empty");
  }
  if (name.size() >= kVaultNameBytes) {
    throw Refusal("the name is longer than " + std::to_string(kVaultNameBytes - 1) + " bytes");
  }
}

inline void check_description(const std::string& description) {
  if (description.size() >= kDescriptionBytes) {
    throw Refusal("the description is longer than " + std::to_string(kDescriptionBytes - 1) +
                  " bytes");
  }
}

inline constexpr char kNameHelp[] = "The name that people see, up to 64 bytes";
inline constexpr char kDescriptionHelp[] = "A free text, up to 512 bytes";

}  // namespace devcfg
