// The configuration tree against libxml2, pugixml alone, and a plain durable write.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstring>
#include <fstream>
#include <sstream>
#include <utility>

#include "bench/bare_tree.h"
#include "bench/counted_syncs.h"
#include "bench/ratio.h"
#include "bench/sample_tree.h"
#include "orvaneip.h"

namespace {

using bench::require;
using bench::SampleTree;

std::size_t read_all(const std::string& path) {
  void* tree = xmlcfg_open(kCfgRead, path.c_str());
  std::size_t length = 0;
  for (int i = 0; i < bench::kSampleDevices; ++i) {
    const std::string node = bench::sample_node(i);
    for (const bench::ValuePath& names : bench::kValuePaths) {
      char value[128];
      xmlcfg_get_str(tree, "", value, sizeof(value), "device", node.c_str(), names[0], names[1],
                     names[2], names[3], nullptr);
      length += std::strlen(value);
    }
  }
  xmlcfg_close(tree, true);
  return length;
}

// Opens the file and reads the device ids of the listed nodes in order. Returns whether one is
// `device_id`.
bool find_device(const std::string& path, const std::string& device_id) {
  void* tree = xmlcfg_open(kCfgRead, path.c_str());
  char list[4096];
  xmlcfg_get_str(tree, "NULL", list, sizeof(list), "device", "device_node_list", nullptr);
  bool found = false;
  char* rest = nullptr;
  for (char* node = strtok_r(list, ",", &rest); node != nullptr && !found;
       node = strtok_r(nullptr, ",", &rest)) {
    char id[128];
    xmlcfg_get_str(tree, "NULL", id, sizeof(id), "device", node, "device_id", nullptr);
    found = device_id == id;
  }
  xmlcfg_close(tree, true);
  return found;
}

// Returns an open tree with a change that is not saved yet.
void* changed_tree(const std::string& path, const char* value) {
  void* tree = xmlcfg_open(kCfgChange, path.c_str());
  require(xmlcfg_set_str(tree, value, "device", "device_064", "brand", nullptr), "storing");
  return tree;
}

std::string bytes_of(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

void tree_read_libxml2(benchmark::State& state) {
  const SampleTree sample;
  for (auto _ : state) {
    benchmark::DoNotOptimize(bench::libxml2_read_all(sample.path()));
  }
}

void tree_read(benchmark::State& state) {
  const SampleTree sample;
  const std::size_t length = read_all(sample.path());
  require(length > 10'000 && length == bench::libxml2_read_all(sample.path()), "reading a tree");
  for (auto _ : state) {
    benchmark::DoNotOptimize(read_all(sample.path()));
  }
}

void tree_bare_parse(benchmark::State& state) {
  const SampleTree sample;
  for (auto _ : state) {
    require(bench::pugixml_parse(sample.path()), "a bare parse");
  }
}

void tree_find_last(benchmark::State& state) {
  const SampleTree sample;
  const std::string last = bench::sample_device_id(bench::kSampleDevices - 1);
  require(find_device(sample.path(), last) && !find_device(sample.path(), "none"), "finding");
  for (auto _ : state) {
    benchmark::DoNotOptimize(find_device(sample.path(), last));
  }
}

// Times `replace` alone, after a tree was opened and changed; `replace` may close the tree. Both
// benchmarks that are compared do so, since a disk is slower after a pause.
template <typename Replace>
void time_replacing(benchmark::State& state, const std::string& path, Replace replace) {
  int syncs = 0;
  bool even = false;
  for (auto _ : state) {
    const int before = bench::sync_count();
    even = !even;
    void* tree = changed_tree(path, even ? "Generic" : "Other");
    const auto start = std::chrono::steady_clock::now();
    require(replace(tree), "replacing the file");
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(elapsed.count());
    syncs = bench::sync_count() - before;
    xmlcfg_close(tree, false);
  }
  state.counters["syncs"] = syncs;
}

void tree_plain_replace(benchmark::State& state) {
  const SampleTree sample;
  const std::string bytes = bench::sample_tree_text();
  time_replacing(state, sample.path(), [&](void*&) {
    return bench::plain_replace(sample.directory(), sample.path(), bytes);
  });
}

void tree_save(benchmark::State& state) {
  const SampleTree sample;
  std::string expected = bytes_of(sample.path());
  const std::string old_value = "<brand>Generic</brand>";
  expected.replace(expected.find(old_value, expected.find("<device_064>")), old_value.size(),
                   "<brand>Other</brand>");
  require(xmlcfg_close(changed_tree(sample.path(), "Other"), true) &&
              bytes_of(sample.path()) == expected,
          "saving");
  time_replacing(state, sample.path(),
                 [](void*& tree) { return xmlcfg_close(std::exchange(tree, nullptr), true); });
}

BENCHMARK(tree_read_libxml2)->Unit(benchmark::kMicrosecond);
BENCHMARK(tree_read)->Unit(benchmark::kMicrosecond);
BENCHMARK(tree_bare_parse)->Unit(benchmark::kMicrosecond);
BENCHMARK(tree_find_last)->Unit(benchmark::kMicrosecond);
BENCHMARK(tree_plain_replace)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(tree_save)->UseManualTime()->Unit(benchmark::kMicrosecond);

const bool kDeclared = [] {
  bench::expect_ratio("tree_read", "tree_read_libxml2", 0.35);
  bench::expect_ratio("tree_find_last", "tree_bare_parse", 1.3);
  bench::expect_ratio("tree_save", "tree_plain_replace", 1.25);
  return true;
}();

}  // namespace
