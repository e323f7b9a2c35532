#include "frames/internal/checksum.h"

#include <algorithm>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace orvaneip {
namespace {

unsigned char sum_each(const unsigned char* bytes, std::size_t size_bytes, unsigned char sum) {
  for (std::size_t i = 0; i < size_bytes; ++i) {
    sum = static_cast<unsigned char>(sum + bytes[i]);
  }
  return sum;
}

#if defined(__x86_64__)
// The sum wraps around at 256, and so does each byte of a vector: the bytes are added lane by lane,
// the lanes only at the end. Four sums, since one alone waits for its own last addition.
__attribute__((target("avx2"))) unsigned char sum_bytes_avx2(const unsigned char* bytes,
                                                             std::size_t size_bytes) {
  using Lanes = unsigned char __attribute__((vector_size(32)));
  constexpr std::size_t kSums = 4;
  Lanes sums[kSums] = {};
  const unsigned char* const end = bytes + size_bytes / sizeof(sums) * sizeof(sums);
  for (; bytes != end; bytes += sizeof(sums)) {
#pragma GCC unroll 4
    for (std::size_t i = 0; i < kSums; ++i) {
      Lanes next;
      std::memcpy(&next, bytes + i * sizeof(Lanes), sizeof(Lanes));
      sums[i] += next;
    }
  }
  sums[0] += sums[1] + sums[2] + sums[3];
  __m256i lanes;
  std::memcpy(&lanes, sums, sizeof(lanes));
  const __m256i eighths = _mm256_sad_epu8(lanes, _mm256_setzero_si256());
  const __m128i halves =
      _mm_add_epi64(_mm256_castsi256_si128(eighths), _mm256_extracti128_si256(eighths, 1));
  const long long sum = _mm_cvtsi128_si64(halves) + _mm_extract_epi64(halves, 1);
  return sum_each(bytes, size_bytes % sizeof(sums), static_cast<unsigned char>(sum));
}
#endif

}  // namespace

unsigned char sum_bytes_portable(const unsigned char* bytes, std::size_t size_bytes) {
  // Four parts at once, for the same reason as above.
  const std::size_t part = size_bytes / 4;
  unsigned char sums[4] = {};
  for (std::size_t i = 0; i < part; ++i) {
    for (std::size_t k = 0; k < 4; ++k) {
      sums[k] = static_cast<unsigned char>(sums[k] + bytes[k * part + i]);
    }
  }
  return sum_each(bytes + 4 * part, size_bytes % 4, sum_each(sums, 4, 0));
}

unsigned char sum_bytes(const unsigned char* bytes, std::size_t size_bytes) {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx2")) {
    return sum_bytes_avx2(bytes, size_bytes);
  }
#endif
  return sum_bytes_portable(bytes, size_bytes);
}

unsigned char copy_and_sum(unsigned char* target, const unsigned char* source,
                           std::size_t size_bytes) {
  // Block by block: each is still in the first cache when it is summed. Much smaller ones leave
  // memcpy no room for its fast ways.
  constexpr std::size_t kBlockBytes = std::size_t{16} * 1024;
  unsigned char sum = 0;
  for (std::size_t done = 0; done < size_bytes; done += kBlockBytes) {
    const std::size_t block = std::min(kBlockBytes, size_bytes - done);
    std::memcpy(target + done, source + done, block);
    sum = static_cast<unsigned char>(sum + sum_bytes(source + done, block));
  }
  return sum;
}

}  // namespace orvaneip
