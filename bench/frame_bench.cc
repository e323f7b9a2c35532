// Checksums and frames against memcpy of as many bytes.
#include <benchmark/benchmark.h>

#include <cstring>
#include <numeric>
#include <vector>

#include "bench/ratio.h"
#include "orvaneip.h"

namespace {

using bench::require;
using Bytes = std::vector<unsigned char>;

constexpr std::size_t kSmall = 4096;
constexpr std::size_t kLarge = 1024 * 1024;

Bytes sample(std::size_t size) {
  Bytes bytes(size);
  unsigned int state = 1;
  for (unsigned char& byte : bytes) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<unsigned char>(state >> 24);
  }
  return bytes;
}

unsigned char plain_sum(const Bytes& bytes) {
  return static_cast<unsigned char>(std::accumulate(bytes.begin(), bytes.end(), 0U));
}

void copy(benchmark::State& state, std::size_t size) {
  const Bytes source = sample(size);
  Bytes target(size);
  for (auto _ : state) {
    std::memcpy(target.data(), source.data(), size);
    benchmark::DoNotOptimize(target.data());
    benchmark::ClobberMemory();
  }
}

void sum(benchmark::State& state, std::size_t size) {
  Bytes bytes = sample(size);
  const int count = static_cast<int>(size);
  require(getCheckSum(bytes.data(), count, 0) == plain_sum(bytes), "checksum");
  for (auto _ : state) {
    benchmark::DoNotOptimize(getCheckSum(bytes.data(), count, 0));
  }
}

void copy_4k(benchmark::State& state) { copy(state, kSmall); }
void copy_1m(benchmark::State& state) { copy(state, kLarge); }
void checksum_4k(benchmark::State& state) { sum(state, kSmall); }
void checksum_1m(benchmark::State& state) { sum(state, kLarge); }

void frame_build_1m(benchmark::State& state) {
  Bytes payload = sample(kLarge);
  Bytes frame(kLarge + kFrameOverheadBytes);
  const auto build = [&] {
    devcfg_generate_send_packet(frame.data(), reinterpret_cast<char*>(payload.data()),
                                static_cast<int>(kLarge));
  };
  build();
  require(std::memcmp(frame.data() + kFrameHeaderBytes, payload.data(), kLarge) == 0 &&
              frame[kFrameHeaderBytes + kLarge] == plain_sum(payload),
          "building a frame");
  for (auto _ : state) {
    build();
    benchmark::ClobberMemory();
  }
}

BENCHMARK(copy_4k);
BENCHMARK(checksum_4k);
BENCHMARK(copy_1m);
BENCHMARK(checksum_1m);
BENCHMARK(frame_build_1m);

const bool kDeclared = [] {
  bench::expect_ratio("checksum_4k", "copy_4k", 1.0);
  bench::expect_ratio("checksum_1m", "copy_1m", 0.5);
  bench::expect_ratio("frame_build_1m", "copy_1m", 1.5);
  return true;
}();

}  // namespace
