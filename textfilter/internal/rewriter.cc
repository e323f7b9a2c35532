#include "textfilter/internal/rewriter.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "textfilter/internal/gap_buffer.h"
#include "textfilter/internal/overlap.h"
#include "textfilter/internal/target_search.h"

namespace orvaneip {
namespace {

std::string_view text_of(const char (&field)[kRuleTextBytes]) {
  return {field, strnlen(field, kRuleTextBytes - 1)};
}

struct RuleTexts {
  bool grows() const { return result.size() > target.size(); }
  std::size_t growth() const { return grows() ? result.size() - target.size() : 0; }
  std::size_t shrinkage() const { return grows() ? 0 : target.size() - result.size(); }

  std::string_view target;
  std::string_view result;
};

// Returns how many replacements fit the capacity.
std::size_t fitting_replacements(const RuleTexts& texts, const BoundedText& text) {
  if (text.length - texts.shrinkage() >= text.capacity) {
    return 0;
  }
  const std::size_t growth = texts.growth();
  return growth > 0 ? (text.capacity - 1 - text.length) / growth : SIZE_MAX;
}

// The matches of a target in the text before any replacement: for a rule that never meets its own
// result.
class Matches {
 public:
  RewriteResult collect(const RuleTexts& texts, const BoundedText& text, const char* first,
                        std::size_t limit);
  void replace(const RuleTexts& texts, BoundedText& text) const;

 private:
  void replace_forward(const RuleTexts& texts, BoundedText& text) const;
  void replace_backward(const RuleTexts& texts, BoundedText& text) const;

  std::size_t count_ = 0;
  std::array<std::size_t, kMaxRuleReplacements> offsets_;
};

RewriteResult Matches::collect(const RuleTexts& texts, const BoundedText& text, const char* first,
                               std::size_t limit) {
  const std::size_t fitting = fitting_replacements(texts, text);
  for (const char* match = first; match != nullptr;) {
    if (count_ == fitting) {
      return {RewriteEnd::kCapacity, count_};
    }
    const auto offset = static_cast<std::size_t>(match - text.bytes);
    offsets_[count_++] = offset;
    const std::string_view rest = text.from(offset + texts.target.size());
    if (rest.empty()) {
      return {RewriteEnd::kEndedText, count_};
    }
    if (count_ == limit) {
      return {RewriteEnd::kLimit, count_};
    }
    match = find_target(texts.target, rest);
  }
  return {RewriteEnd::kNoOccurrence, count_};
}

void Matches::replace(const RuleTexts& texts, BoundedText& text) const {
  if (count_ > 0 && texts.grows()) {
    replace_backward(texts, text);
  } else if (count_ > 0) {
    replace_forward(texts, text);
  }
}

// For results that are not longer than the target.
void Matches::replace_forward(const RuleTexts& texts, BoundedText& text) const {
  char* to = text.bytes + offsets_[0];
  for (std::size_t i = 0; i < count_; ++i) {
    const std::size_t from = offsets_[i] + texts.target.size();
    const std::size_t until = i + 1 < count_ ? offsets_[i + 1] : text.length + 1;
    to = std::copy(texts.result.begin(), texts.result.end(), to);
    if (texts.shrinkage() > 0) {
      std::memmove(to, text.bytes + from, until - from);
    }
    to += until - from;
  }
  text.length -= count_ * texts.shrinkage();
}

void Matches::replace_backward(const RuleTexts& texts, BoundedText& text) const {
  std::size_t until = text.length + 1;
  char* to = text.bytes + until + count_ * texts.growth();
  for (std::size_t i = count_; i-- > 0;) {
    const std::size_t from = offsets_[i] + texts.target.size();
    to -= until - from;
    std::memmove(to, text.bytes + from, until - from);
    to -= texts.result.size();
    std::memcpy(to, texts.result.data(), texts.result.size());
    until = offsets_[i];
  }
  text.length += count_ * texts.growth();
}

RewriteResult rewrite_matches(const RuleTexts& texts, const char* first, std::size_t limit,
                              BoundedText& text) {
  Matches matches;
  const RewriteResult result = matches.collect(texts, text, first, limit);
  matches.replace(texts, text);
  return result;
}

// A replacement cannot make an occurrence that ends before it: the next search begins as many bytes
// before it as an occurrence can reach back.
RewriteResult replace_in(GapBuffer& buffer, const RuleTexts& texts, std::size_t limit,
                         std::size_t fitting) {
  std::size_t count = 0;
  for (const char* match = buffer.rest().data(); match != nullptr;
       match = find_target(texts.target, buffer.rest())) {
    if (count == fitting) {
      return {RewriteEnd::kCapacity, count};
    }
    buffer.advance_to(match);
    const bool ended_text = buffer.rest().size() == texts.target.size();
    buffer.replace(texts.target.size(), texts.result);
    ++count;
    if (ended_text) {
      return {RewriteEnd::kEndedText, count};
    }
    if (count == limit) {
      return {RewriteEnd::kLimit, count};
    }
    buffer.retreat(texts.target.size() - 1);
  }
  return {RewriteEnd::kNoOccurrence, count};
}

RewriteResult rewrite_in_gap_buffer(const RuleTexts& texts, const char* first, std::size_t limit,
                                    BoundedText& text) {
  const std::size_t fitting = fitting_replacements(texts, text);
  if (fitting == 0) {
    return {RewriteEnd::kCapacity, 0};
  }
  GapBuffer buffer(text.bytes, text.length, static_cast<std::size_t>(first - text.bytes),
                   std::min(limit, fitting) * texts.growth());
  if (!buffer.has_memory()) {
    return {RewriteEnd::kNoMemory, 0};
  }
  const RewriteResult result = replace_in(buffer, texts, limit, fitting);
  buffer.close();
  text.length = buffer.length();
  return result;
}

}  // namespace

RewriteResult rewrite(const rule& applied, std::size_t limit, BoundedText& text) {
  const std::string_view target = text_of(applied.target);
  const char* first = find_target(target, text.from(0));
  if (first == nullptr) {
    return {RewriteEnd::kNoOccurrence, 0};
  }
  const RuleTexts texts = {target, text_of(applied.result)};
  return can_meet_result(texts.target, texts.result)
             ? rewrite_in_gap_buffer(texts, first, limit, text)
             : rewrite_matches(texts, first, limit, text);
}

}  // namespace orvaneip
