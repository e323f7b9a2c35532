// The search for the occurrences of a target.
#pragma once

#include <cstddef>
#include <string_view>

namespace orvaneip {

class TargetSearch {
 public:
  // The target is not empty, stays the caller's, and a byte that can be read follows it.
  explicit TargetSearch(std::string_view target);

  // The first occurrence in `text`, which a terminator follows, or null. Linear in the text,
  // whatever the two are.
  const char* find_in(std::string_view text) const;

 private:
  // Bytes of the target that are looked for at many places at once, each as often as a vector
  // register holds.
  struct Repeated {
    explicit Repeated(char byte);
    alignas(16) char bytes[16];
  };

  const char* find_in_linear_time(const char* place, const char* end) const;
  const char* find_by_candidates(std::string_view text) const;
  unsigned candidates(const char* place) const;
  bool is_at(const char* place) const;

  std::string_view target_;
  Repeated first_;
  Repeated second_;
  Repeated last_;
};

}  // namespace orvaneip
