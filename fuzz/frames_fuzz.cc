// Bytes as a payload, and as a stream that arrives in chunks, against a plain search.
// Input: a byte for the longest payload, one for the size of a chunk, then the bytes.
#include <algorithm>
#include <numeric>

#include "fuzz/fuzz.h"

// Returns the size of the whole frame that begins at `at`, or 0.
static std::size_t frame_size(const unsigned char* at, std::size_t left, std::size_t longest) {
  if (left < 7 || *at != 0xF8 || at[4] >= 0x80) {
    return 0;
  }
  const std::size_t size = at[1] + 256U * at[2] + 65536U * at[3] + 16777216U * at[4];
  const bool is_whole = size <= std::min(longest, left - 7) && at[size + 6] == 0xF9 &&
                        std::accumulate(at + 5, at + 5 + size, 0U) % 256 == at[size + 5];
  return is_whole ? size + 7 : 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) {
    return 0;
  }
  const std::uint8_t* const end = data + size;
  std::vector<unsigned char> payload(data + 2, end);
  std::vector<unsigned char> frame(std::max<std::size_t>(size + 5, 8));
  devcfg_generate_send_packet(frame.data(), reinterpret_cast<char*>(payload.data()),
                              static_cast<int>(payload.size()));
  std::vector<unsigned char> taken(payload.size());
  devcfg_unpack_frame(frame.data(), frame.size(), taken.data(), taken.size(), nullptr);
  fuzz::require(taken == payload, "a frame gives its payload back");
  std::vector<unsigned char> kept;
  for (const std::uint8_t *next = data + 2, *arrived = next;;) {
    const bool ended = arrived == end;
    const FoundFrame found = devcfg_find_frame(kept.data(), kept.size(), data[0], ended);
    for (std::size_t i = 0; i < found.skipped_bytes; ++i, ++next) {
      const auto left = static_cast<std::size_t>(end - next);
      fuzz::require(frame_size(next, left, data[0]) == 0, "no frame is skipped");
    }
    if (found.is_whole) {
      fuzz::require(frame_size(next, found.frame_bytes, data[0]) > 0, "what is found is a frame");
      next += found.frame_bytes;
    } else if (ended) {
      fuzz::require(next == end, "nothing is left of a stream that has ended");
      return 0;
    } else {
      fuzz::require(found.frame_bytes <= data[0] + 7U, "no more than the longest frame is kept");
      arrived += std::min<std::ptrdiff_t>(1 + data[1], end - arrived);
    }
    kept.assign(next, arrived);
  }
}
