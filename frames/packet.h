// Frames: blocks of bytes as they are sent and received over a line.
//
// A payload of N bytes makes a frame of N + 7 bytes:
//
//   offset  size  content
//   0       1     start byte 0xF8
//   1       4     N, little-endian, not aligned
//   5       N     the payload, unchanged
//   5 + N   1     checksum: the sum of the payload's bytes modulo 256
//   6 + N   1     end byte 0xF9
//
// What an 8-bit sum detects. One changed byte outside the length is always detected. Of damage that
// leaves random bytes in the payload, 1 in 256 is not; bytes in another order, and changes that
// cancel out, never are. Damage that moves the end (a changed length, a lost or added byte) is only
// missed if there is an end byte too: 1 in 65536 for random bytes, but 1 in 256 where the false
// length reaches the end of a later frame. A line with much damage needs a stronger check inside
// the payload.
#pragma once

#include <cstddef>

#include "platform/export.h"

inline constexpr unsigned char kFrameStart = 0xF8;
inline constexpr unsigned char kFrameEnd = 0xF9;

// Bytes of a frame before its payload, and bytes that are not payload.
inline constexpr std::size_t kFrameHeaderBytes = 5;
inline constexpr std::size_t kFrameOverheadBytes = 7;

// The longest payload in bytes: the largest length of type int.
inline constexpr std::size_t kFramePayloadMax = 0x7FFFFFFF;

// The outcome of checking a frame: the first that applies, in this order.
enum FrameOutcome : int {
  kFrameBadStart = 1,        // the first byte is not 0xF8
  kFrameBadLength = 2,       // the declared length is above what is allowed
  kFrameIncomplete = 3,      // more bytes are needed
  kFrameBadEnd = 4,          // the byte after the checksum is not 0xF9
  kFrameBadChecksum = 5,     // the checksum is not that of the payload
  kFrameBufferTooSmall = 6,  // the frame is whole, but its payload is longer than the buffer
  kFrameWhole = 0,
};

// Returns `seed` plus each of `count` bytes, modulo 256; for a count of 0 or less, or null bytes,
// the seed. Logs the result.
ORVANEIP_API unsigned char getCheckSum(unsigned char* bytes, int count, unsigned char seed);

// Writes the frame of a payload of `payload_size` bytes into `frame`, a buffer of payload_size + 7
// bytes and at least 8: of an empty payload's frame the eighth byte becomes 0. The two must not
// overlap. Logs the checksum as getCheckSum does. A negative size, or a null payload of another
// size than 0, makes no frame: the first 8 bytes become 0 and a line is logged. A null frame is
// ignored.
ORVANEIP_API void devcfg_generate_send_packet(unsigned char* frame, char* payload,
                                              int payload_size);

// Copies the payload of a received frame to `payload`, whether its checksum is right or wrong, and
// only logs checksum and end byte. Trusts the declared length N: N + 7 bytes are read from `frame`
// and N bytes written to `payload`, which must not overlap. Nothing is copied when N is above
// kFramePayloadMax (logged) or an argument is null. For untrusted bytes use devcfg_unpack_frame.
ORVANEIP_API void devcfg_analysis_recv_packet(unsigned char* frame, unsigned char* payload);

// Checks the frame that begins at `frame` and, when it is whole, copies its payload to `payload`.
// Never reads more than `frame_size` bytes, nor writes more than `capacity`; nothing is written
// unless the outcome is kFrameWhole. Bytes after the frame are no error. Logs nothing.
//
// `payload_size`, which may be null, becomes the declared length; 0 for kFrameBadStart,
//   kFrameBadLength, and kFrameIncomplete with fewer than kFrameHeaderBytes. So it is the size of
//   the whole frame less kFrameOverheadBytes, and the capacity that a buffer needs.
// The longest length allowed is kFramePayloadMax. A null `frame` counts as one of no bytes, a null
// `payload` as one without capacity.
ORVANEIP_API FrameOutcome devcfg_unpack_frame(const unsigned char* frame, std::size_t frame_size,
                                              unsigned char* payload, std::size_t capacity,
                                              std::size_t* payload_size);
