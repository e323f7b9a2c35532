// devcfg frame: frames of a line, from standard input to standard output.
#include <algorithm>
#include <string>

#include "cli/command_error.h"
#include "cli/commands.h"
#include "cli/frames/byte_streams.h"
#include "cli/frames/frame_decoder.h"
#include "cli/output.h"

namespace devcfg {
namespace {

struct DecodeOptions {
  std::size_t payload_max = kDefaultPayloadMaxMib << 20;
  bool hex = false;
};

Bytes read_payload() {
  Bytes payload;
  while (payload.size() <= kFramePayloadMax && read_some(payload)) {
  }
  if (payload.size() > kFramePayloadMax) {
    throw CommandError("a frame has at most " + std::to_string(kFramePayloadMax) +
                       " bytes of payload, standard input has more");
  }
  return payload;
}

void encode(const bool& hex) {
  Bytes payload = read_payload();
  const std::size_t frame_bytes = payload.size() + kFrameOverheadBytes;
  Bytes frame(std::max(frame_bytes, kFrameOverheadBytes + 1));
  devcfg_generate_send_packet(frame.data(), reinterpret_cast<char*>(payload.data()),
                              static_cast<int>(payload.size()));
  (hex ? write_hex_view : write_bytes)(frame.data(), frame_bytes);
}

void decode(const DecodeOptions& options) {
  FrameDecoder decoder(options.payload_max, options.hex);
  decoder.run();
  if (decoder.skipped_bytes() > 0) {
    throw CommandError("the stream is damaged: " + pluralize(decoder.skipped_bytes(), "byte") +
                       " skipped");
  }
}

void add_encode(Command frame) {
  const Command command =
      frame.subcommand("encode", "Write standard input as one frame to standard output");
  bool& hex = command.run(encode);
  command.flag("--hex", hex, "Show the frame in hexadecimal");
  command.footer("decode takes a payload above " + std::to_string(kDefaultPayloadMaxMib) +
                 " MiB only with --payload-max.");
}

void add_decode(Command frame) {
  const Command command = frame.subcommand(
      "decode", "Write the payloads of all frames in standard input to standard output");
  DecodeOptions& options = command.run(decode);
  command.flag("--hex", options.hex, "Show each frame's offset, and its payload in hexadecimal");
  command.option("--payload-max", options.payload_max, 0, kFramePayloadMax,
                 "Longest payload in bytes that the sender makes: a longer length is damage");
  command.footer(
      "Bytes outside whole frames are skipped and reported on standard error, and the exit status\n"
      "is then 1. Frames with a payload above --payload-max are skipped too. A damaged length up\n"
      "to it delays the frames after it until as many bytes have arrived or the stream ends.");
}

}  // namespace

void add_frame_commands(Command root) {
  const Command frame = root.group("frame", "Encode and decode frames");
  add_encode(frame);
  add_decode(frame);
}

}  // namespace devcfg
