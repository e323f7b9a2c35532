// The search for frames in a stream that holds damage: bytes lost, added or changed.
#pragma once

#include <cstddef>

#include "platform/export.h"
#include "frames/packet.h"

// What devcfg_find_frame found. The bytes of the stream that follow stay with the caller.
struct FoundFrame {
  // A whole frame begins after `skipped_bytes` and is `frame_bytes` long; its payload is that less
  // kFrameOverheadBytes, from kFrameHeaderBytes on. Otherwise more bytes are needed.
  bool is_whole;
  // Bytes before the frame, or before what may become one: they belong to no frame. Drop them.
  std::size_t skipped_bytes;
  // Not whole: how many bytes there must be after dropping before another search can find more,
  // kFrameOverheadBytes when nothing is left that may become a frame; 0 when the stream has ended.
  std::size_t frame_bytes;
};

// Finds the first whole frame in `size_bytes` bytes of a stream. The caller keeps what was not
// dropped, appends what arrives, and searches again:
//
//   const FoundFrame found = devcfg_find_frame(bytes, size, payload_max, ended);
//   found.is_whole:  use the frame, drop skipped_bytes + frame_bytes, search the rest
//   otherwise:       drop skipped_bytes; wait until frame_bytes are there, or the stream has ended
//
// A start byte whose frame is not whole is rejected, and the search goes on with the byte after it:
// so the next intact frame is found after any damage, but for the damage that the checksum does not
// see (packet.h). A frame inside the payload of a damaged frame is found as if it were sent.
//
// `payload_max` is the longest payload that the stream can hold, kFramePayloadMax at most: a longer
//   length is rejected at once, and payload_max + 7 bytes are all that a caller ever has to keep. A
//   damaged length below it is rejected when that many bytes have arrived, so keep it small.
// `stream_ended`: no more bytes will come, or the line has been silent for too long. What may have
//   become a frame is rejected then.
//
// Reads the bytes only; allocates nothing (16 KiB of stack), keeps nothing, logs nothing. Null
// `bytes` count as none.
//
// Work: one pass over the bytes, and a sum for each start byte whose length and end byte fit (in
// random bytes, 1 start byte in 256): of its payload, until those have cost two more passes, then
// of 64 + size_bytes / 16384 bytes twice. A stream made to do harm has such a start byte in every
// seventh: the worst case of one call is to sum every byte of 1 MiB about 20 times, of 64 MiB about
// 600 times. Where it has a frame in every twelve bytes as well, each of them costs a call, which
// sums up to payload_max bytes: one more reason to keep that small.
ORVANEIP_API FoundFrame devcfg_find_frame(const unsigned char* bytes, std::size_t size_bytes,
                                          std::size_t payload_max, bool stream_ended);
