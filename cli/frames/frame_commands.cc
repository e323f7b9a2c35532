// devcfg frame: frames of a line, from standard input to standard output.
#include <algorithm>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "cli/frames/byte_streams.h"
#include "cli/frames/frame_decoder.h"
#include "cli/output.h"
#include "cli/command_error.h"

namespace devcfg {
namespace {

// Of decode, unless told otherwise: 1 MiB.
constexpr std::size_t kUsualPayloadMax = std::size_t{1024} * 1024;

Bytes read_payload() {
  Bytes payload;
  while (payload.size() <= kFramePayloadMax && read_some(payload)) {
  }
  if (payload.size() > kFramePayloadMax) {
    throw Refusal("a frame holds " + std::to_string(kFramePayloadMax) +
                  " bytes at most, standard input has more");
  }
  return payload;
}

void encode(bool hex) {
  Bytes payload = read_payload();
  const std::size_t frame_bytes = payload.size() + kFrameOverheadBytes;
  Bytes frame(std::max(frame_bytes, kFrameOverheadBytes + 1));
  devcfg_generate_send_packet(frame.data(), reinterpret_cast<char*>(payload.data()),
                              static_cast<int>(payload.size()));
  (hex ? write_hex_view : write_bytes)(frame.data(), frame_bytes);
}

void decode(std::size_t payload_max, bool hex) {
  FrameDecoder decoder(payload_max, hex);
  decoder.run();
  if (decoder.skipped_bytes() > 0) {
    throw Refusal("the stream is damaged: " + counted(decoder.skipped_bytes(), "byte") +
                  " skipped");
  }
}

void add_encode(CLI::App& frame) {
  CLI::App* const command =
      frame.add_subcommand("encode", "Put standard input into one frame on standard output");
  const auto hex = std::make_shared<bool>(false);
  command->footer("decode takes a payload above 1 MiB only with --payload-max.");
  command->add_flag("--hex", *hex, "Show the frame in hexadecimal");
  command->callback([hex] { encode(*hex); });
}

void add_decode(CLI::App& frame) {
  CLI::App* const command = frame.add_subcommand(
      "decode", "Take the payloads of all frames out of the stream on standard input");
  command->footer(
      "Bytes that belong to no whole frame are skipped and told on standard error; the exit "
      "status\n"
      "is 1 then. So are those of a frame with a payload above --payload-max. A damaged length up\n"
      "to it holds back the frames behind it until as many bytes have come, or the stream ends.");
  const auto hex = std::make_shared<bool>(false);
  const auto payload_max = std::make_shared<std::size_t>(kUsualPayloadMax);
  command->add_flag("--hex", *hex, "Show each frame's place, and its payload in hexadecimal");
  command
      ->add_option("--payload-max", *payload_max,
                   "Longest payload in bytes that the sender makes: a longer length is damage")
      ->check(CLI::Range(std::size_t{0}, kFramePayloadMax))
      ->capture_default_str();
  command->callback([hex, payload_max] { decode(*payload_max, *hex); });
}

}  // namespace

void add_frame_commands(CLI::App& app) {
  CLI::App* const frame = app.add_subcommand("frame", "Encode and decode frames");
  frame->require_subcommand(1);
  add_encode(*frame);
  add_decode(*frame);
}

}  // namespace devcfg
