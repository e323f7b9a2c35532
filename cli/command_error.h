// Why a command ends with exit status 1.
#pragma once

#include <stdexcept>
#include <string>

#include "orvaneip.h"

namespace devcfg {

// Thrown by a command that has printed what it was asked, when that is also an answer of "no": exit
// status 1 without a message.
struct NegativeAnswer {};

class Refusal : public std::runtime_error {
 public:
  // `reason` in words, without a final stop.
  explicit Refusal(const std::string& reason) : std::runtime_error(reason) {}

  // The same, and the result of the exported function in words and as a number.
  Refusal(const std::string& reason, int result)
      : std::runtime_error(reason + ": " + devcfg_result_text(result) + " (result " +
                           std::to_string(result) + ")") {}
};

}  // namespace devcfg
