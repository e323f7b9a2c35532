// The search for frames in a damaged stream, with bytes lost, added or changed.
#pragma once

#include <cstddef>

#include "frames/packet.h"
#include "platform/export.h"

// The result of devcfg_find_frame. The bytes of the stream that follow stay with the caller.
struct FoundFrame {
  // A whole frame begins after `skipped_bytes` and has `frame_bytes`; its payload has
  // kFrameOverheadBytes less, from kFrameHeaderBytes on. Otherwise more bytes are needed.
  bool is_whole;
  // Bytes before the frame, or before a possible frame: they belong to no frame. Drop them.
  std::size_t skipped_bytes;
  // Not whole: how many bytes are needed, after dropping, before another search can find more;
  // kFrameOverheadBytes when no possible frame is left; 0 when the stream has ended.
  std::size_t frame_bytes;
};

// Finds the first whole frame in `size_bytes` bytes of a stream. The caller keeps what was not
// dropped, appends what arrives, and searches again:
//
//   const FoundFrame found = devcfg_find_frame(bytes, size, payload_max, ended);
//   found.is_whole:  use the frame, drop skipped_bytes + frame_bytes, search the rest
//   otherwise:       drop skipped_bytes; wait for frame_bytes, or for the end of the stream
//
// A start byte whose frame is not whole is rejected, and the search goes on with the byte after it:
// so the next intact frame is found after any damage, except damage that the checksum does not
// detect (packet.h). A frame inside the payload of a damaged frame is found as if it were sent.
//
// `payload_max`: the longest payload in bytes that the stream can contain, kFramePayloadMax at
// most.
//   A longer length is rejected at once, and a caller never keeps more than payload_max +
//   kFrameOverheadBytes bytes. A damaged length below it is rejected when that many bytes have
//   arrived, so keep it small.
// `stream_ended`: no more bytes will arrive, or the line has been silent for too long. A possible
//   frame is rejected then.
//
// Only reads the bytes; allocates nothing (16 KiB of stack), keeps nothing, logs nothing. Null
// `bytes` count as no bytes.
//
// Work: one pass over the bytes, and a sum for each start byte whose length and end byte fit (in
// random bytes, 1 start byte in 256): of its payload, until those have cost two more passes, then
// of 64 + size_bytes / 16384 bytes twice. In a hostile stream each seventh byte is such a start
// byte: in the worst case one call sums every byte of 1 MiB about 20 times, of 64 MiB about 600
// times. If each twelve bytes contain a frame as well, each of them costs a call, which sums up to
// payload_max bytes: one more reason to keep it small.
ORVANEIP_API FoundFrame devcfg_find_frame(const unsigned char* bytes, std::size_t size_bytes,
                                          std::size_t payload_max, bool stream_ended);
