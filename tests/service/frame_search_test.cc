#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "orvaneip.h"

namespace {

using Bytes = std::basic_string<unsigned char>;

constexpr std::size_t kPayloadMax = 64;

Bytes frame_of(Bytes payload) {
  Bytes frame(payload.size() + 8, 0);
  devcfg_generate_send_packet(frame.data(), reinterpret_cast<char*>(payload.data()),
                              static_cast<int>(payload.size()));
  frame.resize(payload.size() + 7);
  return frame;
}

// All frames of a stream that arrives in chunks; keeps what the header says a caller has to keep.
// Each search sees a copy of exactly its size, so that a sanitizer notices any byte read beyond.
std::vector<Bytes> search_all(const Bytes& stream, std::size_t chunk_bytes) {
  std::vector<Bytes> frames;
  Bytes kept;
  for (std::size_t arrived = 0;;) {
    const bool ended = arrived == stream.size();
    const std::vector<unsigned char> exact(kept.begin(), kept.end());
    const FoundFrame found = devcfg_find_frame(exact.data(), exact.size(), kPayloadMax, ended);
    kept.erase(0, found.skipped_bytes);
    if (found.is_whole) {
      frames.push_back(kept.substr(0, found.frame_bytes));
      kept.erase(0, found.frame_bytes);
    } else if (ended) {
      EXPECT_TRUE(kept.empty());
      return frames;
    } else {
      EXPECT_LT(kept.size(), found.frame_bytes);
      EXPECT_LE(found.frame_bytes, kPayloadMax + kFrameOverheadBytes);
      kept += stream.substr(arrived, chunk_bytes);
      arrived = std::min(arrived + chunk_bytes, stream.size());
    }
  }
}

// Payloads of start and end bytes, of random bytes, none, and what looks like a header.
std::vector<Bytes> sample_frames() {
  std::mt19937 random(20);
  Bytes bytes(kPayloadMax, 0);
  for (unsigned char& byte : bytes) {
    byte = static_cast<unsigned char>(random());
  }
  return {frame_of({0x01, 0x02, 0xFF}),
          frame_of({0xF8, 0xF8, 0xF9, 0xF9, 0xF8}),
          frame_of({}),
          frame_of(bytes),
          frame_of({0xF8, 0x20, 0, 0, 0, 1, 2}),
          frame_of({0xF9, 0xF8, 0x03, 0})};
}

// Every frame that one damaged byte of the stream left intact is found, in order. Returns the
// number of frames beyond those: damage that the checksum does not see.
std::size_t accepted_damage(const std::vector<Bytes>& frames, const Bytes& damaged) {
  const std::vector<Bytes> found = search_all(damaged, damaged.size());
  EXPECT_EQ(search_all(damaged, 7), found);
  auto next = found.begin();
  std::size_t intact = 0;
  std::size_t start = 1;
  const Bytes stream = Bytes(1, 0) + damaged + Bytes(1, 0);
  for (const Bytes& frame : frames) {
    if (stream.find(frame, start - 1) <= start + 1) {
      next = std::find(next, found.end(), frame);
      EXPECT_NE(next, found.end());
      ++intact;
    }
    start += frame.size();
  }
  return found.size() - intact;
}

}  // namespace

TEST(FindFrame, FindsTheOthersAfterOneByteLostChangedOrAdded) {
  const std::vector<Bytes> frames = sample_frames();
  const Bytes stream = std::accumulate(frames.begin(), frames.end(), Bytes());
  std::size_t lost = 0;
  std::size_t changed = 0;
  std::size_t added = 0;
  for (std::size_t i = 0; i < stream.size(); ++i) {
    lost += accepted_damage(frames, Bytes(stream).erase(i, 1));
    for (int value = 0; value <= 0xFF; value += value < 16 || value >= 240 ? 1 : 16) {
      const auto other = static_cast<unsigned char>(value);
      added += accepted_damage(frames, Bytes(stream).insert(i, 1, other));
      if (other != stream[i]) {
        changed += accepted_damage(frames, Bytes(stream).replace(i, 1, 1, other));
      }
    }
  }
  EXPECT_EQ(lost, 0U);
  EXPECT_EQ(changed, 1U);  // the length 5 became 1: F8 01 00 00 00 F8 F8 F9 is a frame
  EXPECT_EQ(added, 1U);    // in the empty payload's frame: F8 01 00 00 00 00 00 F9
}

TEST(FindFrame, TellsWhatToDropAndHowManyBytesAreNeeded) {
  const Bytes whole = frame_of({1, 2});
  struct Row {
    Bytes bytes;
    bool ended;
    bool is_whole;
    std::size_t skipped_bytes;
    std::size_t frame_bytes;
  };
  const Row kRows[] = {
      {{}, false, false, 0, 7},
      {{}, true, false, 0, 0},
      {{1, 2, 3}, false, false, 3, 7},
      {{1, 2, 0xF8}, false, false, 2, 7},
      {{1, 2, 0xF8}, true, false, 3, 0},
      {{0xF8, 2, 0, 0, 0}, false, false, 0, 9},
      {Bytes{1} + whole + whole, false, true, 1, 9},
      {{0xF8, 64, 0, 0, 0}, false, false, 0, 71},
      {{0xF8, 65, 0, 0, 0}, false, false, 5, 7},                // longer than allowed
      {Bytes{0xF8, 64, 0, 0, 0} + whole, false, false, 0, 71},  // may be its payload,
      {Bytes{0xF8, 64, 0, 0, 0} + whole, true, true, 5, 9},     // but is not
  };
  for (const Row& row : kRows) {
    const FoundFrame found =
        devcfg_find_frame(row.bytes.data(), row.bytes.size(), kPayloadMax, row.ended);
    EXPECT_EQ(found.is_whole, row.is_whole);
    EXPECT_EQ(found.skipped_bytes, row.skipped_bytes);
    EXPECT_EQ(found.frame_bytes, row.frame_bytes);
  }
  EXPECT_EQ(devcfg_find_frame(nullptr, 9, 9, true).skipped_bytes, 0U);
  const Bytes negative = {0xF8, 0, 0, 0, 0x80};  // the limit has a limit
  EXPECT_EQ(devcfg_find_frame(negative.data(), 5, SIZE_MAX, false).skipped_bytes, 5U);
}
