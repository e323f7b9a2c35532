// Why a command ends with exit status 1.
#pragma once

#include <stdexcept>
#include <string>

#include "orvaneip.h"

namespace devcfg {

// Thrown by a command whose printed result also answers "no": exit status 1 without a message.
struct NegativeAnswer {};

class CommandError : public std::runtime_error {
 public:
  // `reason` in words, without a full stop.
  explicit CommandError(const std::string& reason) : std::runtime_error(reason) {}

  // Adds the result of the exported function in words and as a number.
  CommandError(const std::string& reason, int result)
      : std::runtime_error(reason + ": " + devcfg_result_text(result) + " (result " +
                           std::to_string(result) + ")") {}
};

}  // namespace devcfg
