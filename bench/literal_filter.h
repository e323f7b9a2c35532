// Filtering by the plain steps, one replacement a pass: the reference of benchmarks and tests.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "orvaneip.h"

namespace bench {

// Longer texts fill their fields without a terminator.
inline rule make_rule(const std::string& target, const std::string& result) {
  rule made = {};
  target.copy(made.target, kRuleTextBytes);
  result.copy(made.result, kRuleTextBytes);
  return made;
}

struct LiteralOutcome {
  std::size_t passes = 0;
  int limit_messages = 0;
  bool met_capacity = false;
  std::vector<std::size_t> replacements;
};

// Runs one pass. Returns false when there is no match, or the text would not fit.
inline bool replace_first(const rule& applied, char* text, char* work, std::size_t capacity,
                          bool& ended_text, bool& met_capacity) {
  const std::size_t target = std::strlen(applied.target);
  const std::size_t result = std::strlen(applied.result);
  const char* match = std::strstr(text, applied.target);
  if (match == nullptr) {
    return false;
  }
  const auto before = static_cast<std::size_t>(match - text);
  const std::size_t after = std::strlen(match + target);
  if (before + result + after + 1 > capacity) {
    met_capacity = true;
    return false;
  }
  std::memcpy(work, text, before);
  std::memcpy(work + before, applied.result, result);
  std::memcpy(work + before + result, match + target, after + 1);
  std::memcpy(text, work, before + result + after + 1);
  ended_text = after == 0;
  return true;
}

inline LiteralOutcome filter_literally(const std::vector<rule>& rules, char* text,
                                       std::size_t capacity = kFilteredTextBytes) {
  const auto work = std::make_unique<char[]>(capacity);
  LiteralOutcome outcome;
  outcome.replacements.assign(rules.size(), 0);
  for (std::size_t i = 0; i < rules.size(); ++i) {
    for (bool again = rules[i].target[0] != '\0'; again;) {
      ++outcome.passes;
      bool ended_text = false;
      again = replace_first(rules[i], text, work.get(), capacity, ended_text, outcome.met_capacity);
      if (outcome.met_capacity) {
        return outcome;
      }
      outcome.replacements[i] += again ? 1 : 0;
      if (ended_text) {
        break;
      }
      if (outcome.passes > 999) {
        ++outcome.limit_messages;
        break;
      }
    }
  }
  return outcome;
}

}  // namespace bench
