// Reading the rule file and matching texts against it.
#include <benchmark/benchmark.h>

#include "bench/ratio.h"
#include "bench/sample_rules.h"

namespace {

using bench::require;
using bench::SampleRules;

// Texts of this device: one that matches the last rule of its last filter, one that matches none.
constexpr char kDevice[] = "id15";
constexpr char kLastTarget[] = "SALE f3 ITEM r15";
constexpr char kNoTarget[] = "SALE f3 ITEM r16";

void rules_copying(benchmark::State& state) {
  const SampleRules sample(128, 4, 16);
  for (auto _ : state) {
    benchmark::DoNotOptimize(bench::copying_read(sample.file()));
  }
}

void rules_in_place(benchmark::State& state) {
  const SampleRules sample(128, 4, 16);
  std::vector<dev_filter> devices;
  require(devcfg_get_filter_rules_list(devices) == 0 && devices.size() == 128 &&
              bench::equal(devices, bench::copying_read(sample.file())),
          "reading the rule file");
  for (auto _ : state) {
    std::vector<dev_filter> read;
    devcfg_get_filter_rules_list(read);
    benchmark::DoNotOptimize(read);
  }
}

const std::vector<dev_filter>& sample_devices() {
  static const std::vector<dev_filter> devices = bench::copying_read(SampleRules(16, 4, 16).file());
  return devices;
}

void matching_bare_scan(benchmark::State& state) {
  const std::vector<dev_filter>& devices = sample_devices();
  require(bench::bare_scan(kLastTarget, kDevice, devices) == 63 &&
              bench::bare_scan(kNoTarget, kDevice, devices) == -1,
          "bare scan");
  for (auto _ : state) {
    benchmark::DoNotOptimize(bench::bare_scan(kLastTarget, kDevice, devices));
  }
}

void matching_by_reference(benchmark::State& state) {
  const std::vector<dev_filter>& devices = sample_devices();
  char output[256];
  require(devcfg_match_filters(kLastTarget, output, sizeof(output), kDevice, devices) == 1 &&
              std::string(output) == "Item sold" &&
              devcfg_match_filters(kNoTarget, output, sizeof(output), kDevice, devices) == 0,
          "matching by reference");
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        devcfg_match_filters(kLastTarget, output, sizeof(output), kDevice, devices));
  }
}

void matching_on_a_copy(benchmark::State& state) {
  const std::vector<dev_filter>& devices = sample_devices();
  std::string text = kLastTarget;
  std::string device = kDevice;
  char output[256];
  const auto match = [&] {
    return devcfg_do_filtering(text.data(), 0, output, sizeof(output), device.data(), devices);
  };
  require(match() == 1 && std::string(output) == "Item sold", "matching on a copy");
  for (auto _ : state) {
    benchmark::DoNotOptimize(match());
  }
}

BENCHMARK(rules_copying)->Unit(benchmark::kMillisecond);
BENCHMARK(rules_in_place)->Unit(benchmark::kMillisecond);
BENCHMARK(matching_bare_scan)->Unit(benchmark::kMicrosecond);
BENCHMARK(matching_by_reference)->Unit(benchmark::kMicrosecond);
BENCHMARK(matching_on_a_copy)->Unit(benchmark::kMicrosecond);

const bool kDeclared = [] {
  bench::expect_ratio("rules_in_place", "rules_copying", 0.55);
  bench::expect_ratio("matching_by_reference", "matching_bare_scan", 0.90);
  bench::expect_ratio("matching_by_reference", "matching_on_a_copy", 0.001);
  return true;
}();

}  // namespace
