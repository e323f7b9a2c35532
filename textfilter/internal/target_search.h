// The search for a rule's target in a text.
#pragma once

#include <cstring>
#include <string_view>

namespace orvaneip {

// From this size in bytes on a target is searched by memmem, shorter ones by strstr, which is two
// to four times as fast on them. The longer a periodic target, the slower strstr gets on a text
// that is full of its period (200 times from 64 bytes to 1000); memmem takes linear time for all of
// them.
inline constexpr std::size_t kLongTargetBytes = 64;

// Returns the first occurrence of `target` in `text`, or null. Neither contains a NUL; the text is
// terminated, and so is a target of fewer than kLongTargetBytes: only the longest one that a rule
// can hold may lack its terminator.
inline const char* find_target(std::string_view target, std::string_view text) {
  return target.size() < kLongTargetBytes
             ? std::strstr(text.data(), target.data())
             : static_cast<const char*>(
                   memmem(text.data(), text.size(), target.data(), target.size()));
}

}  // namespace orvaneip
