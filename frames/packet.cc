#include "frames/packet.h"

#include <cstring>

#include "frames/internal/checksum.h"
#include "frames/internal/frame_check.h"
#include "platform/log_sinks.h"

namespace {

unsigned char log_checksum(unsigned char sum) {
  orvane_log_debug("[%s] Result seed= %#x", "getCheckSum", sum);
  return sum;
}

// Logs the checksum and the end byte, which follow the payload; `sum` is that of the payload.
void log_trailer(unsigned char sum, const unsigned char* trailer) {
  constexpr char kFunction[] = "devcfg_analysis_recv_packet";
  if (sum == trailer[0]) {
    orvane_log_debug("[%s] right check-sum byte : 0x%x", kFunction, sum);
  } else {
    orvane_log_debug("[%s] wrong check-sum byte : 0x%x, 0x%x", kFunction, sum, trailer[0]);
  }
  orvane_log_debug("[%s] right end byte : 0x%x", kFunction, trailer[1]);
}

void write_header(unsigned char* frame, std::size_t payload_size) {
  frame[0] = kFrameStart;
  for (std::size_t i = 1; i < kFrameHeaderBytes; ++i) {
    frame[i] = static_cast<unsigned char>(payload_size);
    payload_size >>= 8;
  }
}

}  // namespace

unsigned char getCheckSum(unsigned char* bytes, int count, unsigned char seed) {
  if (bytes != nullptr && count > 0) {
    const unsigned char sum = orvaneip::sum_bytes(bytes, static_cast<std::size_t>(count));
    seed = static_cast<unsigned char>(seed + sum);
  }
  return log_checksum(seed);
}

void devcfg_generate_send_packet(unsigned char* frame, char* payload, int payload_size) {
  if (frame == nullptr) {
    return;
  }
  std::memset(frame, 0, kFrameOverheadBytes + 1);
  if (payload_size < 0 || (payload == nullptr && payload_size > 0)) {
    orvane_log_debug("[%s] no payload of %d bytes", __func__, payload_size);
    return;
  }
  const auto size = static_cast<std::size_t>(payload_size);
  write_header(frame, size);
  unsigned char* const target = frame + kFrameHeaderBytes;
  const auto* const source = reinterpret_cast<const unsigned char*>(payload);
  target[size] = log_checksum(orvaneip::copy_and_sum(target, source, size));
  target[size + 1] = kFrameEnd;
}

void devcfg_analysis_recv_packet(unsigned char* frame, unsigned char* payload) {
  if (frame == nullptr || payload == nullptr) {
    return;
  }
  const std::size_t size = orvaneip::declared_payload_size(frame);
  if (size > kFramePayloadMax) {
    orvane_log_debug("[%s] length too large : %zu", __func__, size);
    return;
  }
  const unsigned char* const source = frame + kFrameHeaderBytes;
  log_trailer(log_checksum(orvaneip::copy_and_sum(payload, source, size)), source + size);
}

FrameOutcome devcfg_unpack_frame(const unsigned char* frame, std::size_t frame_size,
                                 unsigned char* payload, std::size_t capacity,
                                 std::size_t* payload_size) {
  const orvaneip::FrameCheck check =
      orvaneip::check_frame(frame, frame != nullptr ? frame_size : 0, kFramePayloadMax);
  if (payload_size != nullptr) {
    *payload_size = check.payload_size;
  }
  if (frame == nullptr || check.outcome != kFrameWhole || check.payload_size == 0) {
    return check.outcome;
  }
  if (payload == nullptr || capacity < check.payload_size) {
    return kFrameBufferTooSmall;
  }
  std::memcpy(payload, frame + kFrameHeaderBytes, check.payload_size);
  return kFrameWhole;
}
