#include "search/internal/distinct_terms.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace orvaneip {
namespace {

// Comparing is faster than building a table while the list has at most so many terms, or at most so
// many terms were added.
constexpr std::size_t kComparedList = 16;
constexpr int kComparedTerms = 4;

// The largest number that a slot can hold; a list that exceeds it does not fit today's memory.
constexpr std::size_t kSlotNumberMax = UINT32_MAX;

}  // namespace

// A list that is not empty grows by doubling instead: memory that is reserved call by call for a
// few terms each would move all terms each time.
DistinctTerms::DistinctTerms(std::vector<std::string>& terms, std::size_t expected)
    : terms_(terms), expected_(expected) {
  if (terms_.empty()) {
    terms_.reserve(expected);
  }
}

// Returns the slot of the term, or the free one that it would get.
inline DistinctTerms::Slot& DistinctTerms::find_slot(std::string_view term, std::uint32_t hash) {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t index = hash & mask;; index = (index + 1) & mask) {
    Slot& slot = slots_[index];
    if (slot.number == 0 || (slot.hash == hash && terms_[slot.number - 1] == term)) {
      return slot;
    }
  }
}

DistinctTerms::Slot& DistinctTerms::find_free_slot(std::uint32_t hash) {
  const std::size_t mask = slots_.size() - 1;
  std::size_t index = hash & mask;
  while (slots_[index].number != 0) {
    index = (index + 1) & mask;
  }
  return slots_[index];
}

void DistinctTerms::add(std::string_view term) {
  if (slots_.empty() && (terms_.size() <= kComparedList || compared_ < kComparedTerms)) {
    return compare_and_add(term);
  }
  if (slots_.empty()) {
    build_table();
  } else if (slots_.size() < 2 * (terms_.size() + 1)) {
    double_table();
  }
  const std::uint32_t hash = hash_(term);
  Slot& slot = find_slot(term, hash);
  if (slot.number == 0) {
    terms_.emplace_back(term);
    slot = {hash, static_cast<std::uint32_t>(std::min(terms_.size(), kSlotNumberMax))};
  }
}

void DistinctTerms::compare_and_add(std::string_view term) {
  compared_ = std::min(compared_ + 1, kComparedTerms);
  if (std::find(terms_.begin(), terms_.end(), term) == terms_.end()) {
    terms_.emplace_back(term);
  }
}

void DistinctTerms::build_table() {
  hash_.choose_key();
  slots_.assign(std::bit_ceil(2 * std::max(terms_.size() + 1, expected_)), {});
  for (std::size_t i = 0; i < terms_.size(); ++i) {
    const std::uint32_t hash = hash_(terms_[i]);
    if (Slot& slot = find_slot(terms_[i], hash); slot.number == 0) {
      slot = {hash, static_cast<std::uint32_t>(i + 1)};
    }
  }
}

void DistinctTerms::double_table() {
  const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(2 * slots_.size()));
  for (const Slot& slot : old) {
    if (slot.number != 0) {
      find_free_slot(slot.hash) = slot;
    }
  }
}

}  // namespace orvaneip
