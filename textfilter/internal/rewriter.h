// One rule applied to a text.
#pragma once

#include <cstddef>
#include <string_view>

#include "textfilter/rule.h"

namespace orvaneip {

// A terminated text in a buffer of which `capacity` bytes, terminator included, may be filled by a
// replacement. A text that is longer itself stays readable to its terminator.
struct BoundedText {
  std::string_view from(std::size_t offset) const { return {bytes + offset, length - offset}; }

  char* bytes;
  std::size_t length;  // terminator not included
  std::size_t capacity;
};

// Replacements that one call of rewrite makes at most.
inline constexpr std::size_t kMaxReplacements = 1000;

enum class RewriteEnd {
  kNoOccurrence,  // the last search found none
  kEndedText,     // the last replacement ended the text
  kLimit,         // the limit of replacements was met; whether there are more was not looked for
  kCapacity,      // the next replacement would have exceeded the capacity
  kNoMemory,      // nothing was done: the rule needs memory of its own, which was not to be had
};

struct Rewriting {
  RewriteEnd end;
  std::size_t replacements;
};

// Replaces the first occurrence of the rule's target by its result, and again from the start of the
// text, at most `limit` times (1 to kMaxReplacements). The target must not be empty.
Rewriting rewrite(const rule& applied, std::size_t limit, BoundedText& text);

}  // namespace orvaneip
