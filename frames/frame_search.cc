#include "frames/frame_search.h"

#include <algorithm>
#include <cstring>

#include "frames/internal/frame_check.h"
#include "frames/internal/range_sums.h"

namespace {

// Returns the position of the next start byte, or the size.
std::size_t next_start(const unsigned char* bytes, std::size_t size_bytes, std::size_t position) {
  if (position == size_bytes) {
    return size_bytes;
  }
  const void* found = std::memchr(bytes + position, kFrameStart, size_bytes - position);
  return found != nullptr
             ? static_cast<std::size_t>(static_cast<const unsigned char*>(found) - bytes)
             : size_bytes;
}

}  // namespace

FoundFrame devcfg_find_frame(const unsigned char* bytes, std::size_t size_bytes,
                             std::size_t payload_max, bool stream_ended) {
  const std::size_t size = bytes != nullptr ? size_bytes : 0;
  const std::size_t limit = std::min(payload_max, kFramePayloadMax);
  orvaneip::RangeSums sums(bytes, size);
  for (std::size_t start = next_start(bytes, size, 0); start != size;
       start = next_start(bytes, size, start + 1)) {
    const auto [outcome, payload_size] = orvaneip::check_bounds(bytes + start, size - start, limit);
    const std::size_t payload = start + kFrameHeaderBytes;
    const bool is_whole =
        outcome == kFrameWhole && sums.sum(payload, payload_size) == bytes[payload + payload_size];
    if (is_whole || (outcome == kFrameIncomplete && !stream_ended)) {
      return {is_whole, start, payload_size + kFrameOverheadBytes};
    }
  }
  return {false, size, stream_ended ? 0 : kFrameOverheadBytes};
}
