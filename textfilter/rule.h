// One text-filter rule.
#pragma once

#include <cstddef>
#include <cstdint>

// Sizes of a rule's texts in bytes, terminator included. A longer text is cut to fit.
inline constexpr std::size_t kRuleNameBytes = 256;
inline constexpr std::size_t kRuleTextBytes = 4096;

// A plain record of fixed size, copied byte for byte by the programs that share it: its layout must
// not change. Fill it with zeros first, so that a text that is not set is empty and a number 0.
// Lists of rules are applied first to last.
struct rule {
  char name[kRuleNameBytes];
  std::int32_t type;    // kind of rule: 0, 1 or 2 for device filters; -1: none
  std::int32_t enable;  // not 0: switched on; text filtering with a vault's filters ignores it
  char target[kRuleTextBytes];  // the text to search for
  char result[kRuleTextBytes];  // the text that replaces it
};

static_assert(sizeof(rule) == kRuleNameBytes + 2 * sizeof(std::int32_t) + 2 * kRuleTextBytes);
static_assert(offsetof(rule, type) == kRuleNameBytes);
