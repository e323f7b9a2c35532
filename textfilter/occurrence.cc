#include "textfilter/occurrence.h"

#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace orvaneip {
namespace {

#ifdef __SSE2__

// Looks at 32 places at once for the target's first, second and last byte: text that often begins
// as the target does slows it down less than it does strstr, and it does not end at a NUL.
class PlaceFilter {
 public:
  // A target of two bytes or more.
  explicit PlaceFilter(std::string_view target)
      : first_(_mm_set1_epi8(target[0])),
        second_(_mm_set1_epi8(target[1])),
        last_(_mm_set1_epi8(target.back())),
        distance_(target.size() - 1) {}

  // One bit for each of the places from `text` where the target may be.
  std::uint32_t candidates(const char* text) const {
    const __m128i low = matches(text);
    const __m128i high = matches(text + 16);
    if (_mm_movemask_epi8(_mm_or_si128(low, high)) == 0) {
      return 0;
    }
    return bits(low) | bits(high) << 16;
  }

  static constexpr std::size_t kPlaces = 32;

 private:
  static __m128i load(const char* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  }
  static std::uint32_t bits(__m128i mask) {
    return static_cast<std::uint32_t>(_mm_movemask_epi8(mask));
  }

  __m128i matches(const char* text) const {
    return _mm_and_si128(_mm_and_si128(_mm_cmpeq_epi8(load(text), first_),
                                       _mm_cmpeq_epi8(load(text + distance_), last_)),
                         _mm_cmpeq_epi8(load(text + 1), second_));
  }

  __m128i first_;
  __m128i second_;
  __m128i last_;
  std::size_t distance_;
};

#else

// Looks at one place at a time.
class PlaceFilter {
 public:
  explicit PlaceFilter(std::string_view target) : first_(target[0]) {}

  std::uint32_t candidates(const char* text) const { return *text == first_ ? 1 : 0; }

  static constexpr std::size_t kPlaces = 1;

 private:
  char first_;
};

#endif

bool is_at(const char* place, std::string_view target) {
  return std::memcmp(place, target.data(), target.size()) == 0;
}

const char* find_from(const char* place, const char* end, std::string_view target) {
  return static_cast<const char*>(
      memmem(place, static_cast<std::size_t>(end - place), target.data(), target.size()));
}

// Comparing at the candidates is quick where they are few. Where they cost more than the text that
// was passed by, memmem goes on, which is slower and linear for every text.
const char* find_by_candidates(std::string_view text, std::string_view target) {
  const PlaceFilter filter(target);
  const char* place = text.data();
  const char* const end = text.data() + text.size();
  std::size_t credit = 4096;
  std::size_t left = text.size() - target.size() + 1;
  for (; left >= PlaceFilter::kPlaces;
       left -= PlaceFilter::kPlaces, place += PlaceFilter::kPlaces) {
    for (std::uint32_t bits = filter.candidates(place); bits != 0; bits &= bits - 1) {
      const char* candidate = place + __builtin_ctz(bits);
      if (is_at(candidate, target)) {
        return candidate;
      }
      if (credit < target.size()) {
        return find_from(place, end, target);
      }
      credit -= target.size();
    }
    credit += PlaceFilter::kPlaces;
  }
  for (; left > 0; --left, ++place) {
    if (*place == target.front() && is_at(place, target)) {
      return place;
    }
  }
  return nullptr;
}

}  // namespace

const char* find_occurrence(std::string_view text, std::string_view target) {
  if (text.size() < target.size()) {
    return nullptr;
  }
  if (target.size() == 1) {
    return static_cast<const char*>(std::memchr(text.data(), target.front(), text.size()));
  }
  return find_by_candidates(text, target);
}

}  // namespace orvaneip
