// Sums of many ranges of the same bytes, without reading all bytes of each range.
#pragma once

#include <cstddef>

namespace orvaneip {

// Sums the bytes of each range until as many bytes as there are have been read. From then on it
// keeps the sum of all bytes before each block, and a range costs at most two blocks. Without that,
// a hostile stream of 4 MiB takes the search 500 times as long.
class RangeSums {
 public:
  RangeSums(const unsigned char* bytes, std::size_t size_bytes)
      : bytes_(bytes), left_bytes_(size_bytes), block_bytes_(size_bytes / kBlocks + kBlockBytes) {}

  // Returns the sum modulo 256 of `size_bytes` bytes from `begin` on.
  unsigned char sum(std::size_t begin, std::size_t size_bytes);

 private:
  // On the stack: 16 KiB.
  static constexpr std::size_t kBlocks = 16384;
  // Shorter ranges are not worth a lookup.
  static constexpr std::size_t kBlockBytes = 64;

  unsigned char sum_up_to(std::size_t end);

  const unsigned char* bytes_;
  std::size_t left_bytes_;  // that may still be read without the sums of blocks
  std::size_t block_bytes_;
  std::size_t known_ = 0;            // number of blocks whose sums are kept
  unsigned char sums_[kBlocks + 1];  // of all bytes before a block; set up to known_
};

}  // namespace orvaneip
