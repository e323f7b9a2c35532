// A list of terms without duplicates.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "search/internal/keyed_hash.h"

namespace orvaneip {

// The first few terms are compared with the whole list; a hash table is built when more follow.
class DistinctTerms {
 public:
  // `terms` may contain terms already, also duplicates; nothing else may change it meanwhile.
  // `expected`: an estimate of how many will be added, for which memory is reserved.
  DistinctTerms(std::vector<std::string>& terms, std::size_t expected);

  // Appends `term`, unless the list contains it.
  void add(std::string_view term);

 private:
  struct Slot {
    std::uint32_t hash;
    std::uint32_t number;  // of the term in the list, from 1; 0: free
  };

  void compare_and_add(std::string_view term);
  Slot& find_slot(std::string_view term, std::uint32_t hash);
  Slot& find_free_slot(std::uint32_t hash);
  void build_table();
  void double_table();

  std::vector<std::string>& terms_;
  std::size_t expected_;
  int compared_ = 0;         // terms that were compared with the whole list
  std::vector<Slot> slots_;  // a power of two, at most half full; empty: not built yet
  KeyedHash hash_;
};

}  // namespace orvaneip
