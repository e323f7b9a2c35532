// One rule applied to a text.
#pragma once

#include <cstddef>
#include <string_view>

#include "textfilter/rule.h"
#include "textfilter/text_filter.h"

namespace orvaneip {

// A terminated text in a buffer of which a replacement may fill `capacity` bytes, terminator
// included. A text that is longer itself is still read to its terminator.
struct BoundedText {
  std::string_view from(std::size_t offset) const { return {bytes + offset, length - offset}; }

  char* bytes;
  std::size_t length;  // terminator not included
  std::size_t capacity;
};

// The most replacements that one rule makes: the one after which the limit is noticed included.
inline constexpr std::size_t kMaxRuleReplacements = kMaxFilterPasses + 1;

enum class RewriteEnd {
  kNoOccurrence,  // the last search found no occurrence
  kEndedText,     // the last replacement ended the text
  kLimit,         // the limit of replacements is reached; no further search was made
  kCapacity,      // the next replacement would have exceeded the capacity
  kNoMemory,      // nothing was done: there was no memory for a copy of the text
};

struct RewriteResult {
  RewriteEnd end;
  std::size_t replacements;
};

// Replaces the first occurrence of the rule's target by its result, and again from the start of the
// text, at most `limit` times (1 to kMaxRuleReplacements). The target must not be empty.
RewriteResult rewrite(const rule& applied, std::size_t limit, BoundedText& text);

}  // namespace orvaneip
