// The sum of bytes modulo 256.
#pragma once

#include <cstddef>

namespace orvaneip {

// Returns the sum; on a processor with AVX2 several times as fast as the portable one.
unsigned char sum_bytes(const unsigned char* bytes, std::size_t size_bytes);

// Returns the sum by plain C++, which the compiler vectorises for any processor.
unsigned char sum_bytes_portable(const unsigned char* bytes, std::size_t size_bytes);

// Copies `size_bytes` from `source` to `target`, which do not overlap, and returns their sum.
unsigned char copy_and_sum(unsigned char* target, const unsigned char* source,
                           std::size_t size_bytes);

}  // namespace orvaneip
