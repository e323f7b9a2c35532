#include "search/internal/distinct_terms.h"

#include <sys/random.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace orvaneip {
namespace {

// A short list, or a few terms, are faster to compare than a table is to build.
constexpr std::size_t kComparedList = 16;
constexpr int kComparedTerms = 4;

// Terms that a slot's number can tell; a list has fewer, as far as memory goes today.
constexpr std::size_t kMostTerms = UINT32_MAX;

constexpr std::uint64_t kPrime = (std::uint64_t{1} << 61) - 1;
constexpr std::size_t kBlock = 7;  // bytes that are below the prime as a number

__extension__ using Wide = unsigned __int128;

// Below 2^63 when `left` is.
std::uint64_t multiply(std::uint64_t left, std::uint64_t right) {
  const Wide product = static_cast<Wide>(left) * right;
  return (static_cast<std::uint64_t>(product) & kPrime) + static_cast<std::uint64_t>(product >> 61);
}

std::uint64_t random_key() {
  std::uint64_t key = 0;
  if (getrandom(&key, sizeof(key), GRND_NONBLOCK) != sizeof(key)) {
    key = reinterpret_cast<std::uintptr_t>(&key) * 0x9E3779B97F4A7C15u;
  }
  return key % (kPrime - 2) + 2;
}

template <typename Number>
std::uint64_t load(const char* bytes) {
  Number number;
  std::memcpy(&number, bytes, sizeof(number));
  return number;
}

// The bytes of a text of 1 to 7 as one number, another one for each text.
std::uint64_t short_number(std::string_view text) {
  const std::size_t size = text.size();
  if (size >= 4) {
    return load<std::uint32_t>(text.data()) | load<std::uint32_t>(text.data() + size - 4)
                                                  << (8 * (size - 4));
  }
  return load<std::uint8_t>(text.data()) |
         load<std::uint8_t>(text.data() + size / 2) << (8 * (size / 2)) |
         load<std::uint8_t>(text.data() + size - 1) << (8 * (size - 1));
}

}  // namespace

// The polynomial with the bytes, seven at a time, as coefficients, at the key: two terms agree for
// at most as many keys as they have coefficients. Search text holds no NUL, so the last coefficient
// tells how long the term is.
inline std::uint32_t DistinctTerms::hash_of(std::string_view term) const {
  std::uint64_t hash = 0;
  for (; term.size() > kBlock; term.remove_prefix(kBlock)) {
    const std::uint64_t block = load<std::uint64_t>(term.data()) & ((std::uint64_t{1} << 56) - 1);
    hash = multiply(hash + block, key_);
  }
  hash = term.empty() ? hash : multiply(hash + short_number(term), key_);
  return static_cast<std::uint32_t>(hash);
}

// A list that holds something grows by doubling instead: room that is made call by call for a few
// terms each would move all terms each time.
DistinctTerms::DistinctTerms(std::vector<std::string>& terms, std::size_t expected)
    : terms_(terms), expected_(expected) {
  if (terms_.empty()) {
    terms_.reserve(expected);
  }
}

// Where the term is, or would be.
inline DistinctTerms::Slot& DistinctTerms::slot_for(std::string_view term, std::uint32_t hash) {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t place = hash & mask;; place = (place + 1) & mask) {
    Slot& slot = slots_[place];
    if (slot.number == 0 || (slot.hash == hash && terms_[slot.number - 1] == term)) {
      return slot;
    }
  }
}

DistinctTerms::Slot& DistinctTerms::free_slot(std::uint32_t hash) {
  const std::size_t mask = slots_.size() - 1;
  std::size_t place = hash & mask;
  while (slots_[place].number != 0) {
    place = (place + 1) & mask;
  }
  return slots_[place];
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
  const std::uint32_t hash = hash_of(term);
  Slot& slot = slot_for(term, hash);
  if (slot.number == 0) {
    terms_.emplace_back(term);
    slot = {hash, static_cast<std::uint32_t>(std::min(terms_.size(), kMostTerms))};
  }
}

void DistinctTerms::compare_and_add(std::string_view term) {
  compared_ = std::min(compared_ + 1, kComparedTerms);
  if (std::find(terms_.begin(), terms_.end(), term) == terms_.end()) {
    terms_.emplace_back(term);
  }
}

void DistinctTerms::build_table() {
  key_ = random_key();
  slots_.assign(std::bit_ceil(2 * std::max(terms_.size() + 1, expected_)), {});
  for (std::size_t i = 0; i < terms_.size(); ++i) {
    const std::uint32_t hash = hash_of(terms_[i]);
    if (Slot& slot = slot_for(terms_[i], hash); slot.number == 0) {
      slot = {hash, static_cast<std::uint32_t>(i + 1)};
    }
  }
}

void DistinctTerms::double_table() {
  const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(2 * slots_.size()));
  for (const Slot& slot : old) {
    if (slot.number != 0) {
      free_slot(slot.hash) = slot;
    }
  }
}

}  // namespace orvaneip
