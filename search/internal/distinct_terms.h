// A list of texts that takes each one once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvaneip {

// The first few terms are looked up by comparing; a table is built when more follow. Its hash has a
// random key, so that no input makes its terms collide.
class DistinctTerms {
 public:
  // `terms` may hold texts already, also ones that repeat. It must not be changed by others.
  // `expected` is a guess of how many will be added; room for them is made at once.
  DistinctTerms(std::vector<std::string>& terms, std::size_t expected);

  // Appends `term`, unless the list holds it.
  void add(std::string_view term);

 private:
  struct Slot {
    std::uint32_t hash;
    std::uint32_t number;  // of the term in the list, from 1; 0: free
  };

  void compare_and_add(std::string_view term);
  Slot& slot_for(std::string_view term, std::uint32_t hash);
  Slot& free_slot(std::uint32_t hash);
  std::uint32_t hash_of(std::string_view term) const;
  void build_table();
  void double_table();

  std::vector<std::string>& terms_;
  std::size_t expected_;
  int compared_ = 0;         // terms looked up by comparing
  std::vector<Slot> slots_;  // a power of two, at most half full; empty: not built yet
  std::uint64_t key_ = 0;
};

}  // namespace orvaneip
