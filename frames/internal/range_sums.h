// Sums of many ranges of the same bytes, without reading each range whole.
#pragma once

#include <cstddef>

namespace orvaneip {

// Reads ranges as they are until that has cost as much as all bytes. From then on it keeps the sums
// of all bytes before each block, and a range costs at most two blocks.
class RangeSums {
 public:
  RangeSums(const unsigned char* bytes, std::size_t size_bytes)
      : bytes_(bytes), left_bytes_(size_bytes), block_bytes_(size_bytes / kBlocks + kBlockBytes) {}

  // The sum modulo 256 of `size_bytes` bytes from `begin` on.
  unsigned char sum(std::size_t begin, std::size_t size_bytes);

 private:
  // On the stack: 16 KiB.
  static constexpr std::size_t kBlocks = 16384;
  // Shorter ones are not worth a look-up.
  static constexpr std::size_t kBlockBytes = 64;

  unsigned char sum_up_to(std::size_t end);

  const unsigned char* bytes_;
  std::size_t left_bytes_;  // that may still be read as they are
  std::size_t block_bytes_;
  std::size_t known_ = 0;            // blocks whose sums are kept
  unsigned char sums_[kBlocks + 1];  // of all bytes before a block; set up to known_
};

}  // namespace orvaneip
