#include "cli/frames/frame_decoder.h"

#include <cstdio>

#include "cli/output.h"
#include "orvaneip.h"

namespace devcfg {

void FrameDecoder::run() {
  bool ended = false;
  while (!ended) {
    ended = !read_some(kept_);
    if (ended || kept_.size() >= needed_bytes_) {
      take_frames(ended);
      std::fflush(stdout);
    }
  }
  report_gap();
}

void FrameDecoder::take_frames(bool ended) {
  std::size_t used = 0;
  FoundFrame found{};
  do {
    found = devcfg_find_frame(kept_.data() + used, kept_.size() - used, payload_max_, ended);
    used += found.skipped_bytes;
    offset_ += found.skipped_bytes;
    gap_bytes_ += found.skipped_bytes;
    if (found.is_whole) {
      report_gap();
      write_frame(kept_.data() + used, found.frame_bytes);
      used += found.frame_bytes;
      offset_ += found.frame_bytes;
    }
  } while (found.is_whole);
  needed_bytes_ = found.frame_bytes;
  kept_.erase(kept_.begin(), kept_.begin() + static_cast<std::ptrdiff_t>(used));
}

void FrameDecoder::write_frame(const unsigned char* frame, std::size_t frame_bytes) {
  const unsigned char* const payload = frame + kFrameHeaderBytes;
  const std::size_t payload_bytes = frame_bytes - kFrameOverheadBytes;
  if (hex_) {
    std::printf("frame at offset %zu, payload of %s\n", offset_,
                pluralize(payload_bytes, "byte").c_str());
    write_hex_view(payload, payload_bytes);
  } else {
    write_bytes(payload, payload_bytes);
  }
}

void FrameDecoder::report_gap() {
  if (gap_bytes_ > 0) {
    report("skipped " + pluralize(gap_bytes_, "byte") + " at offset " +
           std::to_string(offset_ - gap_bytes_));
  }
  skipped_bytes_ += gap_bytes_;
  gap_bytes_ = 0;
}

}  // namespace devcfg
