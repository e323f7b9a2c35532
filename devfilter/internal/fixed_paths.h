// The path of the rule file.
#pragma once

namespace orvaneip {

inline constexpr char kRuleFilePath[] = ORVANEIP_ROOT "/etc/config/kfilter.xml";

}  // namespace orvaneip
