// What the fuzzers share.
//
// An input is texts with a form feed between them: it stands neither in XML nor in JSON, and may be
// left out everywhere else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace fuzz {

// Log lines are made, so that their arguments are read, and dropped; temporary files stand in
// memory.
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
  std::vector<std::string> texts(1);
  for (const std::uint8_t* byte = data; byte != data + size; ++byte) {
    *byte == '\f' ? void(texts.emplace_back()) : texts.back().push_back(static_cast<char>(*byte));
  }
  texts.resize(texts.size() < least ? least : texts.size());
  return texts;
}

// The number that a text begins with, held to 0 and `most`; 0 for none.
inline std::size_t number_of(const std::string& text, std::size_t most) {
  const unsigned long number = std::strtoul(text.c_str(), nullptr, 10);
  return number < most ? number : most;
}

}  // namespace fuzz
