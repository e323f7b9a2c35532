// What the fuzzers share. An input is texts with a form feed between them: neither XML nor JSON may
// contain one, and the other texts need none.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "orvaneip.h"
#include "tests/support/temp_directory.h"

namespace fuzz {

// Set before the first input: log lines are formatted, so that their arguments are read, and
// dropped; files are in memory.
inline const bool kIsPrepared =
    (test::keep_files_in_memory(), setenv("ORVANE_LOG", "/dev/null", 1) == 0);

// Ends the program when what must hold for every input does not. libFuzzer keeps that input.
inline void require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
  }
}

// Returns the texts of the input, and empty ones up to a number of `least`.
inline std::vector<std::string> texts_of(const std::uint8_t* data, std::size_t size,
                                         std::size_t least) {
  std::vector<std::string> texts = split({data, data + size}, '\f');
  texts.resize(texts.size() < least ? least : texts.size());
  return texts;
}

// Returns the size in bytes of the longest text in brackets, the brackets included, after the first
// opening one.
inline std::size_t longest_brackets(const std::string& text) {
  std::size_t longest = 0;
  for (std::size_t at = text.find('(') + 1; (at = text.find('(', at)) != std::string::npos; ++at) {
    longest = std::max(longest, std::min(text.find(')', at), text.size()) - at + 1);
  }
  return longest;
}

}  // namespace fuzz
