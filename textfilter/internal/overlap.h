// Whether a rule's target can be found again where its result was put.
#pragma once

#include <string_view>

namespace orvaneip {

// Returns true when a result, once it is in the text, can contain an occurrence of the target, be
// part of one, or overlap with one. Both have fewer than kRuleTextBytes bytes, the target at least
// one.
bool can_meet_result(std::string_view target, std::string_view result);

}  // namespace orvaneip
