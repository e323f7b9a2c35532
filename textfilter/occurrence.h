// The search for an occurrence.
#pragma once

#include <cstddef>
#include <string_view>

namespace orvaneip {

// The first occurrence of `target`, which is not empty, in `text`, or null. Linear in the text,
// whatever the two are.
const char* find_occurrence(std::string_view text, std::string_view target);

}  // namespace orvaneip
