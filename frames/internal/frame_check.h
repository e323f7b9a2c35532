// Is this a whole frame?
#pragma once

#include <cstddef>

#include "frames/packet.h"

namespace orvaneip {

struct FrameCheck {
  FrameOutcome outcome;
  std::size_t payload_size;  // as devcfg_unpack_frame reports it
};

// Of the frame that begins at `bytes`, with `payload_max` bytes of payload allowed: all but the
// checksum, so kFrameWhole tells that the payload is worth summing.
FrameCheck check_bounds(const unsigned char* bytes, std::size_t size_bytes,
                        std::size_t payload_max);

// The same with the checksum.
FrameCheck check_frame(const unsigned char* bytes, std::size_t size_bytes, std::size_t payload_max);

// The little-endian length of a frame whose header is there.
std::size_t declared_payload_size(const unsigned char* frame);

}  // namespace orvaneip
