#include "frames/internal/frame_check.h"

#include "frames/internal/checksum.h"

namespace orvaneip {

std::size_t declared_payload_size(const unsigned char* frame) {
  std::size_t size = 0;
  for (std::size_t i = kFrameHeaderBytes - 1; i > 0; --i) {
    size = size << 8 | frame[i];
  }
  return size;
}

FrameCheck check_bounds(const unsigned char* bytes, std::size_t size_bytes,
                        std::size_t payload_max) {
  if (size_bytes > 0 && bytes[0] != kFrameStart) {
    return {kFrameBadStart, 0};
  }
  if (size_bytes < kFrameHeaderBytes) {
    return {kFrameIncomplete, 0};
  }
  const std::size_t payload_size = declared_payload_size(bytes);
  if (payload_size > payload_max) {
    return {kFrameBadLength, 0};
  }
  if (size_bytes < kFrameOverheadBytes || size_bytes - kFrameOverheadBytes < payload_size) {
    return {kFrameIncomplete, payload_size};
  }
  const bool has_end = bytes[kFrameHeaderBytes + payload_size + 1] == kFrameEnd;
  return {has_end ? kFrameWhole : kFrameBadEnd, payload_size};
}

FrameCheck check_frame(const unsigned char* bytes, std::size_t size_bytes,
                       std::size_t payload_max) {
  const FrameCheck check = check_bounds(bytes, size_bytes, payload_max);
  if (check.outcome != kFrameWhole) {
    return check;
  }
  const unsigned char* const payload = bytes + kFrameHeaderBytes;
  const bool right = sum_bytes(payload, check.payload_size) == payload[check.payload_size];
  return {right ? kFrameWhole : kFrameBadChecksum, check.payload_size};
}

}  // namespace orvaneip
