// The check of a frame.
#pragma once

#include <cstddef>

#include "frames/packet.h"

namespace orvaneip {

struct FrameCheck {
  FrameOutcome outcome;
  std::size_t payload_size;  // as devcfg_unpack_frame reports it
};

// Checks all but the checksum of the frame that begins at `bytes`, with at most `payload_max` bytes
// of payload: kFrameWhole means that the checksum decides.
FrameCheck check_bounds(const unsigned char* bytes, std::size_t size_bytes,
                        std::size_t payload_max);

// Checks the frame with its checksum.
FrameCheck check_frame(const unsigned char* bytes, std::size_t size_bytes, std::size_t payload_max);

// Returns the declared length of a frame; its kFrameHeaderBytes are read.
std::size_t declared_payload_size(const unsigned char* frame);

}  // namespace orvaneip
