#include "frames/internal/range_sums.h"

#include <algorithm>

#include "frames/internal/checksum.h"

namespace orvaneip {

unsigned char RangeSums::sum(std::size_t begin, std::size_t size_bytes) {
  if (size_bytes <= left_bytes_ || size_bytes <= block_bytes_) {
    left_bytes_ -= std::min(size_bytes, left_bytes_);
    return sum_bytes(bytes_ + begin, size_bytes);
  }
  return static_cast<unsigned char>(sum_up_to(begin + size_bytes) - sum_up_to(begin));
}

unsigned char RangeSums::sum_up_to(std::size_t end) {
  sums_[0] = 0;
  const std::size_t block = end / block_bytes_;
  for (; known_ < block; ++known_) {
    const unsigned char next = sum_bytes(bytes_ + known_ * block_bytes_, block_bytes_);
    sums_[known_ + 1] = static_cast<unsigned char>(sums_[known_] + next);
  }
  const std::size_t start = block * block_bytes_;
  return static_cast<unsigned char>(sums_[block] + sum_bytes(bytes_ + start, end - start));
}

}  // namespace orvaneip
