#include "textfilter/internal/overlap.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "textfilter/rule.h"

namespace orvaneip {
namespace {

// The prefix function of a text: for each prefix the length of the longest shorter prefix that it
// ends with.
class PrefixFunction {
 public:
  // `text` has fewer than kRuleTextBytes bytes.
  explicit PrefixFunction(std::string_view text) : text_(text) {
    lengths_[0] = 0;
    for (std::size_t end = 1, length = 0; end < text.size(); ++end) {
      length = extend(length, text[end]);
      lengths_[end] = static_cast<std::uint16_t>(length);
    }
  }

  // Returns the length of the longest prefix at the end of some bytes and `byte`, when the longest
  // one at the end of those bytes has `length`, which is less than the text's.
  std::size_t extend(std::size_t length, char byte) const {
    while (length > 0 && text_[length] != byte) {
      length = lengths_[length - 1];
    }
    return text_[length] == byte ? length + 1 : 0;
  }

 private:
  std::string_view text_;
  std::array<std::uint16_t, kRuleTextBytes> lengths_;  // set up to the size of `text_`
};

// Returns true when `left` can end with up to `longest` of the bytes that `right` begins with.
bool can_overlap(std::string_view left, std::string_view right, std::size_t longest) {
  if (longest == 0) {
    return false;
  }
  const PrefixFunction prefixes(right.substr(0, longest));
  std::size_t length = 0;
  for (const char byte : left.substr(left.size() - longest)) {
    length = prefixes.extend(length, byte);
  }
  return length > 0;
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace

bool can_meet_result(std::string_view target, std::string_view result) {
  const std::size_t longest = std::min(target.size() - 1, result.size());
  return contains(result, target) || can_overlap(target, result, longest) ||
         can_overlap(result, target, longest) ||
         (target.size() >= 2 && contains(target.substr(1, target.size() - 2), result));
}

}  // namespace orvaneip
