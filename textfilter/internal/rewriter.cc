#include "textfilter/internal/rewriter.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "textfilter/internal/gap_buffer.h"
#include "textfilter/internal/target_search.h"

namespace orvaneip {
namespace {

// The texts of a rule.
struct Pair {
  explicit Pair(const rule& applied)
      : target(applied.target, strnlen(applied.target, kRuleTextBytes - 1)),
        result(applied.result, strnlen(applied.result, kRuleTextBytes - 1)),
        search(target) {}

  bool grows() const { return result.size() > target.size(); }
  std::size_t growth() const { return grows() ? result.size() - target.size() : 0; }
  std::size_t shrinkage() const { return grows() ? 0 : target.size() - result.size(); }

  std::string_view target;
  std::string_view result;
  TargetSearch search;
};

// How many replacements the capacity has room for.
std::size_t room_for(const Pair& pair, const BoundedText& text) {
  if (text.length - pair.shrinkage() >= text.capacity) {
    return 0;
  }
  const std::size_t growth = pair.growth();
  return growth > 0 ? (text.capacity - 1 - text.length) / growth : SIZE_MAX;
}

// For each beginning of a text the length of the longest shorter one that it ends with.
class Borders {
 public:
  // `text` has fewer than kRuleTextBytes bytes.
  explicit Borders(std::string_view text) : text_(text) {
    lengths_[0] = 0;
    for (std::size_t end = 1, length = 0; end < text.size(); ++end) {
      length = longer_by(text[end], length);
      lengths_[end] = static_cast<std::uint16_t>(length);
    }
  }

  // How much of the beginning stands behind `byte`, when `length` bytes of it stood before.
  std::size_t longer_by(char byte, std::size_t length) const {
    while (length > 0 && text_[length] != byte) {
      length = lengths_[length - 1];
    }
    return text_[length] == byte ? length + 1 : 0;
  }

 private:
  std::string_view text_;
  std::array<std::uint16_t, kRuleTextBytes> lengths_;  // of the beginnings of `text_`
};

// True when `left` can end with up to `longest` of the bytes that `right` begins with.
bool can_overlap(std::string_view left, std::string_view right, std::size_t longest) {
  if (longest == 0) {
    return false;
  }
  const Borders beginnings(right.substr(0, longest));
  std::size_t length = 0;
  for (const char byte : left.substr(left.size() - longest)) {
    length = beginnings.longer_by(byte, length);
  }
  return length > 0;
}

// True when a result, once it is in the text, can be part of an occurrence of the target, or stand
// in the middle of one.
bool can_meet_result(const Pair& pair) {
  const std::string_view target = pair.target;
  const std::string_view result = pair.result;
  const std::size_t longest = std::min(target.size() - 1, result.size());
  return result.find(target) != std::string_view::npos || can_overlap(target, result, longest) ||
         can_overlap(result, target, longest) ||
         (target.size() >= 2 &&
          target.substr(1, target.size() - 2).find(result) != std::string_view::npos);
}

// The places of the occurrences in the text as it is: for a rule that never meets its result.
struct Places {
  Rewriting collect(const Pair& pair, const BoundedText& text, const char* first,
                    std::size_t limit);
  void replace_forward(const Pair& pair, BoundedText& text) const;
  void replace_backward(const Pair& pair, BoundedText& text) const;

  std::size_t count = 0;
  std::array<std::size_t, kMaxReplacements> offsets;
};

Rewriting Places::collect(const Pair& pair, const BoundedText& text, const char* first,
                          std::size_t limit) {
  const std::size_t room = room_for(pair, text);
  for (const char* place = first; place != nullptr;) {
    if (count == room) {
      return {RewriteEnd::kCapacity, count};
    }
    offsets[count++] = static_cast<std::size_t>(place - text.bytes);
    const std::string_view rest = text.from(offsets[count - 1] + pair.target.size());
    if (rest.empty()) {
      return {RewriteEnd::kEndedText, count};
    }
    if (count == limit) {
      return {RewriteEnd::kLimit, count};
    }
    place = pair.search.find_in(rest);
  }
  return {RewriteEnd::kNoOccurrence, count};
}

// For results that are not longer than the target.
void Places::replace_forward(const Pair& pair, BoundedText& text) const {
  char* to = text.bytes + offsets[0];
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t from = offsets[i] + pair.target.size();
    const std::size_t until = i + 1 < count ? offsets[i + 1] : text.length + 1;
    to = std::copy(pair.result.begin(), pair.result.end(), to);
    if (pair.shrinkage() > 0) {
      std::memmove(to, text.bytes + from, until - from);
    }
    to += until - from;
  }
  text.length -= count * pair.shrinkage();
}

void Places::replace_backward(const Pair& pair, BoundedText& text) const {
  std::size_t until = text.length + 1;
  char* to = text.bytes + until + count * pair.growth();
  for (std::size_t i = count; i-- > 0;) {
    const std::size_t from = offsets[i] + pair.target.size();
    to -= until - from;
    std::memmove(to, text.bytes + from, until - from);
    to -= pair.result.size();
    std::memcpy(to, pair.result.data(), pair.result.size());
    until = offsets[i];
  }
  text.length += count * pair.growth();
}

Rewriting rewrite_places(const Pair& pair, const char* first, std::size_t limit,
                         BoundedText& text) {
  Places places;
  const Rewriting rewriting = places.collect(pair, text, first, limit);
  if (places.count > 0 && pair.grows()) {
    places.replace_backward(pair, text);
  } else if (places.count > 0) {
    places.replace_forward(pair, text);
  }
  return rewriting;
}

// A replacement cannot make an occurrence that ends before it: the next search goes on as many
// bytes before it as an occurrence can reach back.
Rewriting replace_in(GapText& gap, const Pair& pair, std::size_t limit, std::size_t room) {
  std::size_t count = 0;
  for (const char* place = gap.back().data(); place != nullptr;
       place = pair.search.find_in(gap.back())) {
    if (count == room) {
      return {RewriteEnd::kCapacity, count};
    }
    gap.advance(place);
    const bool ended_text = gap.back().size() == pair.target.size();
    gap.replace(pair.target.size(), pair.result);
    ++count;
    if (ended_text) {
      return {RewriteEnd::kEndedText, count};
    }
    if (count == limit) {
      return {RewriteEnd::kLimit, count};
    }
    gap.retreat(pair.target.size() - 1);
  }
  return {RewriteEnd::kNoOccurrence, count};
}

Rewriting rewrite_gap(const Pair& pair, const char* first, std::size_t limit, BoundedText& text) {
  const std::size_t room = room_for(pair, text);
  if (room == 0) {
    return {RewriteEnd::kCapacity, 0};
  }
  GapText gap(text.bytes, text.length, static_cast<std::size_t>(first - text.bytes),
              std::min(limit, room) * pair.growth());
  if (!gap.has_memory()) {
    return {RewriteEnd::kNoMemory, 0};
  }
  const Rewriting rewriting = replace_in(gap, pair, limit, room);
  gap.close();
  text.length = gap.length();
  return rewriting;
}

}  // namespace

Rewriting rewrite(const rule& applied, std::size_t limit, BoundedText& text) {
  const Pair pair(applied);
  const char* first = pair.search.find_in(text.from(0));
  if (first == nullptr) {
    return {RewriteEnd::kNoOccurrence, 0};
  }
  return can_meet_result(pair) ? rewrite_gap(pair, first, limit, text)
                               : rewrite_places(pair, first, limit, text);
}

}  // namespace orvaneip
