// The frames of a stream that may be damaged.
#pragma once

#include <cstddef>

#include "cli/frames/byte_streams.h"

namespace devcfg {

// The longest payload that frame decode accepts unless an option says otherwise.
inline constexpr std::size_t kDefaultPayloadMaxMib = 1;

// Takes the frames out of bytes as they arrive, writes their payloads to standard output and
// reports skipped bytes on standard error.
class FrameDecoder {
 public:
  FrameDecoder(std::size_t payload_max, bool hex) : payload_max_(payload_max), hex_(hex) {}

  // Reads all of standard input and writes each frame as soon as it is whole.
  void run();

  std::size_t skipped_bytes() const { return skipped_bytes_; }

 private:
  void take_frames(bool ended);
  void write_frame(const unsigned char* frame, std::size_t frame_bytes);
  void report_gap();

  std::size_t payload_max_;
  bool hex_;
  Bytes kept_;
  std::size_t needed_bytes_ = 0;   // size of kept_ at which a search can find more
  std::size_t offset_ = 0;         // in the stream, where the next search begins
  std::size_t gap_bytes_ = 0;      // skipped just before offset_
  std::size_t skipped_bytes_ = 0;  // in all
};

}  // namespace devcfg
