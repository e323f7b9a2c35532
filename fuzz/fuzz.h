// What the fuzzers share. An input is texts with a form feed between them: it stands neither in XML
// nor in JSON, and may be left out everywhere else.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "orvaneip.h"

namespace fuzz {

// Log lines are made, so that their arguments are read, and dropped; files stand in memory.
inline const int kSurroundings =
    setenv("ORVANE_LOG", "/dev/null", 1) | setenv("TMPDIR", "/dev/shm", 1);

// What must hold for every input. libFuzzer keeps the one for which it does not.
inline void require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
  }
}

// At least `least` texts, the missing ones empty.
inline std::vector<std::string> texts_of(const std::uint8_t* data, std::size_t size,
                                         std::size_t least) {
  std::vector<std::string> texts = split({data, data + size}, '\f');
  texts.resize(texts.size() < least ? least : texts.size());
  return texts;
}

// Of the brackets within the first, with what stands in them.
inline std::size_t longest_brackets(const std::string& text) {
  std::size_t longest = 0;
  for (std::size_t at = text.find('(') + 1; (at = text.find('(', at)) != std::string::npos; ++at) {
    longest = std::max(longest, std::min(text.find(')', at), text.size()) - at + 1);
  }
  return longest;
}

}  // namespace fuzz
