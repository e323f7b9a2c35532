#include <gtest/gtest.h>

#include <climits>
#include <numeric>
#include <random>

#include "orvaneip.h"
#include "service/checksum.h"
#include "tests/support/captured_log.h"

namespace {

using Bytes = std::vector<unsigned char>;
using Lines = std::vector<std::string>;

Bytes random_bytes(std::size_t size) {
  static std::mt19937 random(7);
  Bytes bytes(size);
  std::generate(bytes.begin(), bytes.end(), [] { return static_cast<unsigned char>(random()); });
  return bytes;
}

unsigned char plain_sum(const Bytes& bytes) {
  return static_cast<unsigned char>(std::accumulate(bytes.begin(), bytes.end(), 0U));
}

// The frame, spelled out.
Bytes frame_of(const Bytes& payload) {
  const std::size_t size = payload.size();
  Bytes frame(size + 7, 0);
  frame[0] = 0xF8;
  frame[1] = static_cast<unsigned char>(size);
  frame[2] = static_cast<unsigned char>(size >> 8);
  frame[3] = static_cast<unsigned char>(size >> 16);
  std::copy(payload.begin(), payload.end(), frame.begin() + 5);
  frame[size + 5] = plain_sum(payload);
  frame[size + 6] = 0xF9;
  return frame;
}

Bytes with(Bytes bytes, std::size_t position, unsigned char value) {
  bytes.at(position) = value;
  return bytes;
}

// Cut or filled up; the default is what guards the rest of a buffer.
Bytes sized(Bytes bytes, std::size_t size, unsigned char value = 0xA5) {
  bytes.resize(size, value);
  return bytes;
}

}  // namespace

TEST(Checksum, IsTheSeedPlusEveryByte) {
  struct Row {
    Bytes bytes;
    int count;
    unsigned char seed;
    unsigned char sum;
    const char* logged;
  };
  const Row kRows[] = {{{0x01, 0x02, 0xFF}, 3, 0, 0x02, "0x2"},
                       {{0xF0}, 1, 0x10, 0, "0"},
                       {{0xF0}, 0, 0x10, 0x10, "0x10"},
                       {{0xF0}, -1, 0x10, 0x10, "0x10"},
                       {{}, 5, 0xFE, 0xFE, "0xfe"}};  // null
  for (Row row : kRows) {
    test::take_log();
    EXPECT_EQ(getCheckSum(row.bytes.data(), row.count, row.seed), row.sum);
    EXPECT_EQ(test::take_product_log(),
              Lines{std::string("[getCheckSum] Result seed= ") + row.logged});
  }
  for (std::size_t size = 0; size < 300; ++size) {
    for (std::size_t offset = 0; offset <= std::min<std::size_t>(size, 33); ++offset) {
      const Bytes all = random_bytes(size);
      const unsigned char sum = plain_sum({all.begin() + static_cast<long>(offset), all.end()});
      ASSERT_EQ(orvaneip::sum_bytes(all.data() + offset, size - offset), sum) << size;
      ASSERT_EQ(orvaneip::sum_bytes_portable(all.data() + offset, size - offset), sum) << size;
    }
  }
}

TEST(Frame, IsBuiltAndTakenApartWithinItsBounds) {
  for (const int size : {-1, INT_MIN, 0, 1, 2, 3, 255, 256, 16383, 16384, 16385, 70000}) {
    Bytes payload = random_bytes(static_cast<std::size_t>(std::max(size, 0)));
    const std::size_t room = payload.size() + 20;
    Bytes frame = size < 0 ? Bytes(8, 0) : frame_of(payload);
    frame = sized(sized(frame, std::max<std::size_t>(frame.size(), 8), 0), room);
    Bytes buffer = sized({}, room);
    devcfg_generate_send_packet(buffer.data(), reinterpret_cast<char*>(payload.data()), size);
    ASSERT_EQ(buffer, frame) << size;
    Bytes taken = sized({}, room);
    devcfg_analysis_recv_packet(buffer.data(), taken.data());
    EXPECT_EQ(taken, sized(payload, room)) << size;
  }
  devcfg_generate_send_packet(nullptr, nullptr, 0);
  Bytes buffer = sized({}, 9);
  devcfg_generate_send_packet(buffer.data(), nullptr, 2);
  EXPECT_EQ(buffer, sized(Bytes(8, 0), 9));
}

TEST(Frame, ReceivedWithDamageIsTakenApartAndTold) {
  const Bytes frame = frame_of({0x01, 0x02, 0xFF});
  struct Row {
    Bytes frame;
    Bytes payload;
    Lines lines;
  };
  const Row kRows[] = {
      {frame, {1, 2, 0xFF}, {"seed= 0x2", "right check-sum byte : 0x2", "right end byte : 0xf9"}},
      {with(frame, 6, 7),
       {1, 7, 0xFF},
       {"seed= 0x7", "wrong check-sum byte : 0x7, 0x2", "right end byte : 0xf9"}},
      {with(with(frame, 0, 0), 9, 0x11),
       {1, 2, 0xFF},
       {"seed= 0x2", "right check-sum byte : 0x2", "right end byte : 0x11"}},
      {with(frame, 4, 0x80), {}, {"length too large : 2147483651"}}};
  for (Row row : kRows) {
    test::take_log();
    Bytes payload = sized({}, 8);
    devcfg_analysis_recv_packet(row.frame.data(), payload.data());
    EXPECT_EQ(payload, sized(row.payload, 8));
    for (std::string& line : row.lines) {
      line.insert(0, line[0] == 's' ? "[getCheckSum] Result " : "[devcfg_analysis_recv_packet] ");
    }
    EXPECT_EQ(test::take_product_log(), row.lines);
  }
}

TEST(UnpackFrame, HasOneOutcomeAndWritesOnlyAWholePayload) {
  const Bytes frame = frame_of({0x01, 0x02, 0xFF});
  struct Row {
    Bytes frame;
    std::size_t capacity;
    FrameOutcome outcome;
    std::size_t payload_size;
  };
  std::vector<Row> rows = {{frame, 3, kFrameWhole, 3},
                           {sized(frame, 12), 4, kFrameWhole, 3},
                           {frame, 2, kFrameBufferTooSmall, 3},
                           {with(frame, 0, 0xF9), 3, kFrameBadStart, 0},
                           {with(frame, 4, 0x80), 3, kFrameBadLength, 0},
                           {with(frame, 4, 0xFF), 3, kFrameBadLength, 0},
                           {with(frame, 4, 0x7F), 3, kFrameIncomplete, 0x7F000003},
                           {with(frame, 1, 2), 3, kFrameBadEnd, 2},
                           {with(frame, 9, 0xF8), 0, kFrameBadEnd, 3},
                           {with(frame, 5, 0), 3, kFrameBadChecksum, 3},
                           {with(frame, 8, 0), 0, kFrameBadChecksum, 3}};
  for (std::size_t size = 0; size < frame.size(); ++size) {
    rows.push_back({sized(frame, size), 3, kFrameIncomplete, size < 5 ? 0U : 3U});
  }
  for (const Row& row : rows) {
    Bytes buffer = sized({}, 8);
    std::size_t size = 99;
    EXPECT_EQ(
        devcfg_unpack_frame(row.frame.data(), row.frame.size(), buffer.data(), row.capacity, &size),
        row.outcome);
    EXPECT_EQ(size, row.payload_size);
    EXPECT_EQ(buffer, sized(row.outcome == kFrameWhole ? Bytes{1, 2, 0xFF} : Bytes(), 8));
  }
  EXPECT_EQ(devcfg_unpack_frame(nullptr, 9, nullptr, 9, nullptr), kFrameIncomplete);
  EXPECT_EQ(devcfg_unpack_frame(frame.data(), 10, nullptr, 9, nullptr), kFrameBufferTooSmall);
  EXPECT_EQ(devcfg_unpack_frame(frame_of({}).data(), 7, nullptr, 0, nullptr), kFrameWhole);
}
