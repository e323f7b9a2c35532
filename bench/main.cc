// Runs the benchmarks, interleaved and repeated, and prints the ratios that matter.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <memory>

#include "bench/median_reporter.h"
#include "bench/options.h"
#include "bench/result.h"

namespace bench {
namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// Sets the allocator to what it becomes by itself once a text of some MiB was released. Left alone,
// it returns the memory of each iteration to the kernel or not, depending on which benchmarks ran
// before; then an iteration measures page faults, and 2.5 times as many for a doubled input.
// Results much larger than the limits (rule files) are still built in fresh pages.
void fix_allocator_limits() {
  constexpr int kMiB = 1024 * 1024;
  require(mallopt(M_MMAP_THRESHOLD, 6 * kMiB) == 1 && mallopt(M_TRIM_THRESHOLD, 12 * kMiB) == 1,
          "setting the allocator's limits");
}

// Returns an expression that matches the benchmarks of these rows.
std::string benchmarks_of(const std::vector<Ratio>& rows) {
  std::string names;
  for (const Ratio& row : rows) {
    names += (names.empty() ? "" : "|") + row.name + "|" + row.reference;
  }
  return "^(" + names + ")(/|$)";
}

std::vector<Result> measure(const std::vector<Ratio>& rows, MedianReporter& reporter) {
  benchmark::RunSpecifiedBenchmarks(&reporter, benchmarks_of(rows));
  std::vector<Result> results;
  for (const Ratio& row : rows) {
    results.push_back({row, reporter.median(row.name), reporter.median(row.reference)});
  }
  return results;
}

// Measures the rows that missed once more; the better result counts.
void retry_missed(std::vector<Result>& results, MedianReporter& reporter) {
  std::vector<Ratio> missed;
  std::vector<Result*> targets;
  for (Result& result : results) {
    if (!result.is_met()) {
      missed.push_back(result.row);
      targets.push_back(&result);
    }
  }
  if (missed.empty()) {
    return;
  }
  const std::vector<Result> again = measure(missed, reporter);
  for (std::size_t i = 0; i < again.size(); ++i) {
    if (again[i].ratio() < targets[i]->ratio()) {
      *targets[i] = again[i];
    }
    targets[i]->is_retried = true;
  }
}

// Opened before anything runs: a path that cannot be written is wrong usage.
File open_json(const std::string& path) {
  File file(path == "-" ? stdout : std::fopen(path.c_str(), "w"), std::fclose);
  if (!file) {
    std::fprintf(stderr, "orvaneip_bench: %s: %s\n", path.c_str(), std::strerror(errno));
    std::exit(2);
  }
  return file;
}

void write_json(File file, const std::vector<Result>& results) {
  const bool is_written = std::fputs(json_document(results).c_str(), file.get()) >= 0;
  require(std::fclose(file.release()) == 0 && is_written, "writing the JSON file");
}

// Returns the exit status.
int run(const Options& options) {
  const bool is_json_on_stdout = options.json_path == "-";
  File json(nullptr, std::fclose);
  MedianReporter reporter;
  if (!options.json_path.empty()) {
    json = open_json(options.json_path);
  }
  if (is_json_on_stdout) {
    reporter.SetOutputStream(&std::cerr);
  }
  std::vector<Result> results = measure(options.rows, reporter);
  retry_missed(results, reporter);
  print_table(results, is_json_on_stdout ? stderr : stdout);
  if (json) {
    write_json(std::move(json), results);
  }
  return std::all_of(results.begin(), results.end(), std::mem_fn(&Result::is_met)) ? 0 : 1;
}

void list_benchmarks(const std::vector<Ratio>& rows) {
  MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter, benchmarks_of(rows));
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  setenv("ORVANE_LOG", "off", 1);
  const bench::Options options = bench::read_options(argc, argv);
  if (options.is_listing) {
    bench::list_benchmarks(options.rows);
    return 0;
  }
  bench::fix_allocator_limits();
  return bench::run(options);
}
