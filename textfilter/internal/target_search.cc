#include "textfilter/internal/target_search.h"

#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace orvaneip {
namespace {

#ifdef __SSE2__

constexpr std::size_t kPlaces = 32;  // that candidates() looks at

__m128i load(const char* bytes) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)); }

unsigned bits(__m128i mask) { return static_cast<unsigned>(_mm_movemask_epi8(mask)); }

__m128i equal(const char* left, const char* right) {
  return _mm_cmpeq_epi8(load(left), load(right));
}

#else

constexpr std::size_t kPlaces = 1;

#endif

}  // namespace

TargetSearch::Repeated::Repeated(char byte) { std::memset(bytes, byte, sizeof(bytes)); }

TargetSearch::TargetSearch(std::string_view target)
    : target_(target),
      first_(target.front()),
      second_(target[target.size() > 1 ? 1 : 0]),
      last_(target.back()) {}

const char* TargetSearch::find_in(std::string_view text) const {
  if (text.size() < target_.size()) {
    return nullptr;
  }
  if (target_.size() == 1) {
    return static_cast<const char*>(std::memchr(text.data(), target_.front(), text.size()));
  }
  return find_by_candidates(text);
}

inline bool TargetSearch::is_at(const char* place) const {
  return std::memcmp(place, target_.data(), target_.size()) == 0;
}

// One bit for each of kPlaces places where the target may be. Three of its bytes are looked at:
// text that often begins as the target does slows this down less than it does strstr.
inline unsigned TargetSearch::candidates(const char* place) const {
#ifdef __SSE2__
  const std::size_t distance = target_.size() - 1;
  const auto matches = [&](const char* places) {
    return _mm_and_si128(
        _mm_and_si128(equal(places, first_.bytes), equal(places + 1, second_.bytes)),
        equal(places + distance, last_.bytes));
  };
  const __m128i low = matches(place);
  const __m128i high = matches(place + 16);
  return bits(_mm_or_si128(low, high)) == 0 ? 0 : bits(low) | bits(high) << 16;
#else
  return *place == target_.front() ? 1 : 0;
#endif
}

// strstr is faster than memmem on text that is all near misses, but needs a terminated target,
// which a damaged record may lack. The text that rules are applied to is terminated.
const char* TargetSearch::find_in_linear_time(const char* place, const char* end) const {
  const char* target = target_.data();
  if (target[target_.size()] == '\0') {
    return std::strstr(place, target);
  }
  return static_cast<const char*>(
      memmem(place, static_cast<std::size_t>(end - place), target, target_.size()));
}

// Comparing at the candidates is quick where they are few. Where they cost more than the text that
// was passed by, a search goes on that is slower and linear for every text.
const char* TargetSearch::find_by_candidates(std::string_view text) const {
  const char* place = text.data();
  const char* const end = text.data() + text.size();
  std::size_t credit = 4096;
  std::size_t left = text.size() - target_.size() + 1;
  for (; left >= kPlaces; left -= kPlaces, place += kPlaces) {
    for (unsigned found = candidates(place); found != 0; found &= found - 1) {
      const char* candidate = place + __builtin_ctz(found);
      if (is_at(candidate)) {
        return candidate;
      }
      if (credit < target_.size()) {
        return find_in_linear_time(place, end);
      }
      credit -= target_.size();
    }
    credit += kPlaces;
  }
  for (; left > 0; --left, ++place) {
    if (*place == target_.front() && is_at(place)) {
      return place;
    }
  }
  return nullptr;
}

}  // namespace orvaneip
