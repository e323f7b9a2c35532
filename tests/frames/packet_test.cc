#include <algorithm>
#include <climits>
#include <numeric>
#include <random>

#include "frames/internal/checksum.h"
#include "frames/internal/range_sums.h"
#include "tests/support/library.h"

namespace {

using Bytes = std::basic_string<unsigned char>;
using Lines = std::vector<std::string>;

const std::string kSum = "[getCheckSum] Result seed= ";

Bytes random_bytes(std::size_t size) {
  static std::mt19937 random(7);
  Bytes bytes(size, 0);
  std::generate(bytes.begin(), bytes.end(), [] { return static_cast<unsigned char>(random()); });
  return bytes;
}

unsigned char plain_sum(const Bytes& bytes) {
  return static_cast<unsigned char>(std::accumulate(bytes.begin(), bytes.end(), 0U));
}

// Returns the expected frame.
Bytes frame_of(const Bytes& payload) {
  const auto byte = [&](int shift) { return static_cast<unsigned char>(payload.size() >> shift); };
  Bytes frame = {0xF8, byte(0), byte(8), byte(16), 0};
  return frame + payload + plain_sum(payload) + Bytes{0xF9};
}

Bytes with(Bytes bytes, std::size_t position, unsigned char value) {
  bytes.at(position) = value;
  return bytes;
}

// Returns the bytes cut or filled up to the size; the default value guards the rest of a buffer.
Bytes sized(Bytes bytes, std::size_t size, unsigned char value = 0xA5) {
  bytes.resize(size, value);
  return bytes;
}

}  // namespace

TEST(Checksum, IsTheSeedPlusEveryByte) {
  Bytes bytes = {0x01, 0x02, 0xFF};
  test::take_log();
  EXPECT_EQ(getCheckSum(bytes.data(), 3, 0), 0x02);
  EXPECT_EQ(getCheckSum(bytes.data(), 1, 0xFF), 0);
  EXPECT_EQ(getCheckSum(bytes.data(), -1, 0x10), 0x10);
  EXPECT_EQ(getCheckSum(nullptr, 5, 0xFE), 0xFE);
  EXPECT_EQ(test::take_product_log(),
            (Lines{kSum + "0x2", kSum + "0", kSum + "0x10", kSum + "0xfe"}));
  const Bytes all = random_bytes(100'000);
  orvaneip::RangeSums sums(all.data(), all.size());
  for (std::size_t i = 0; i < 1000; ++i) {
    const std::size_t begin = i * 7919 % all.size();
    const Bytes range = all.substr(begin, i < 300 ? i : i * 61);
    ASSERT_EQ(orvaneip::sum_bytes(&all[begin], range.size()), plain_sum(range)) << i;
    ASSERT_EQ(orvaneip::sum_bytes_portable(&all[begin], range.size()), plain_sum(range)) << i;
    ASSERT_EQ(sums.sum(begin, range.size()), plain_sum(range)) << i;
  }
}

TEST(Frame, IsBuiltAndReadWithinItsBounds) {
  for (const int size : {-1, INT_MIN, 0, 1, 2, 3, 255, 256, 16383, 16384, 16385, 70000}) {
    Bytes payload = random_bytes(static_cast<std::size_t>(std::max(size, 0)));
    const Bytes frame = size < 0 ? Bytes() : frame_of(payload);
    const std::size_t frame_size = std::max<std::size_t>(frame.size(), 8);  // at least zeros
    const std::size_t room = payload.size() + 20;
    Bytes buffer = sized({}, room), taken = buffer;
    devcfg_generate_send_packet(buffer.data(), reinterpret_cast<char*>(payload.data()), size);
    ASSERT_EQ(buffer, sized(sized(frame, frame_size, 0), room)) << size;
    devcfg_analysis_recv_packet(buffer.data(), taken.data());
    EXPECT_EQ(taken, sized(payload, room)) << size;
  }
}

TEST(Frame, ReceivedWithDamageIsReadAndLogged) {
  const Bytes frame = frame_of({0x01, 0x02, 0xFF});
  const std::string tag = "[devcfg_analysis_recv_packet] ", wrong = "wrong check-sum byte : ";
  const std::string right = tag + "right check-sum byte : 0x2", end = tag + "right end byte : ";
  std::tuple<Bytes, Bytes, Lines> rows[] = {
      {frame, {1, 2, 0xFF}, {kSum + "0x2", right, end + "0xf9"}},
      {with(frame, 6, 7), {1, 7, 0xFF}, {kSum + "0x7", tag + wrong + "0x7, 0x2", end + "0xf9"}},
      {with(with(frame, 0, 0), 9, 0x11), {1, 2, 0xFF}, {kSum + "0x2", right, end + "0x11"}},
      {with(frame, 4, 0x80), {}, {tag + "length too large : 2147483651"}}};
  for (auto& [received, payload, lines] : rows) {
    test::take_log();
    Bytes taken = sized({}, 8);
    devcfg_analysis_recv_packet(received.data(), taken.data());
    EXPECT_EQ(taken, sized(payload, 8));
    EXPECT_EQ(test::take_product_log(), lines);
  }
}

TEST(UnpackFrame, HasOneOutcomeAndWritesOnlyAWholePayload) {
  const Bytes frame = frame_of({0x01, 0x02, 0xFF});
  // The frame, the capacity, the outcome, the payload's size.
  std::vector<std::tuple<Bytes, std::size_t, FrameOutcome, std::size_t>> rows = {
      {frame, 3, kFrameWhole, 3},
      {sized(frame, 12), 4, kFrameWhole, 3},
      {frame, 2, kFrameBufferTooSmall, 3},
      {with(frame, 0, 0xF9), 3, kFrameBadStart, 0},
      {with(frame, 4, 0x80), 3, kFrameBadLength, 0},
      {with(frame, 4, 0x7F), 3, kFrameIncomplete, 0x7F000003},
      {with(frame, 1, 2), 3, kFrameBadEnd, 2},
      {with(frame, 9, 0xF8), 0, kFrameBadEnd, 3},
      {with(frame, 5, 0), 3, kFrameBadChecksum, 3},
      {with(frame, 8, 0), 0, kFrameBadChecksum, 3}};
  for (std::size_t size = 0; size < frame.size(); ++size) {
    rows.emplace_back(sized(frame, size), 3, kFrameIncomplete, size < 5 ? 0U : 3U);
  }
  for (const auto& [bytes, capacity, outcome, payload_size] : rows) {
    Bytes taken = sized({}, 8);
    std::size_t size = 99;
    EXPECT_EQ(devcfg_unpack_frame(bytes.data(), bytes.size(), taken.data(), capacity, &size),
              outcome);
    EXPECT_EQ(size, payload_size);
    EXPECT_EQ(taken, sized(outcome == kFrameWhole ? Bytes{1, 2, 0xFF} : Bytes(), 8));
  }
  EXPECT_EQ(devcfg_unpack_frame(nullptr, 9, nullptr, 9, nullptr), kFrameIncomplete);
  EXPECT_EQ(devcfg_unpack_frame(frame.data(), 10, nullptr, 9, nullptr), kFrameBufferTooSmall);
  EXPECT_EQ(devcfg_unpack_frame(frame_of({}).data(), 7, nullptr, 0, nullptr), kFrameWhole);
  const Bytes begun = {0xF8, 64, 0, 0, 0}, negative = {0xF8, 0, 0, 0, 0x80};
  EXPECT_EQ(devcfg_find_frame(begun.data(), 5, 64, false).frame_bytes, 71U);
  EXPECT_EQ(devcfg_find_frame(begun.data(), 5, 63, false).frame_bytes, 7U);
  EXPECT_EQ(devcfg_find_frame(negative.data(), 5, SIZE_MAX, false).skipped_bytes, 5U);
  EXPECT_EQ(devcfg_find_frame(nullptr, 9, 9, true).skipped_bytes, 0U);
}
