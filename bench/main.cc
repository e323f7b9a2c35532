// Runs the benchmarks, interleaved and repeated, and prints the ratios that matter.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <vector>

#include "bench/ratio.h"

namespace bench {
namespace {

struct Ratio {
  std::string name;
  std::string reference;
  double aim;
};

std::vector<Ratio>& ratios() {
  static std::vector<Ratio> all;
  return all;
}

// A benchmark counts with its processor time, since others use the machine as well, unless it says
// UseRealTime or UseManualTime: it waits for the disk.
class MedianReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.aggregate_name == "median") {
        const bool waits = !run.run_name.time_type.empty();
        medians_[run.run_name.function_name] =
            waits ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void print_ratios() const {
    std::printf("\n%-34s %-30s %7s %7s\n", "benchmark", "reference", "ratio", "aim");
    for (const Ratio& ratio : ratios()) {
      const auto name = medians_.find(ratio.name);
      const auto reference = medians_.find(ratio.reference);
      if (name != medians_.end() && reference != medians_.end()) {
        const double value = name->second / reference->second;
        std::printf("%-34s %-30s %7.3f %7.3f %s\n", ratio.name.c_str(), ratio.reference.c_str(),
                    value, ratio.aim, value <= ratio.aim ? "" : "missed");
      }
    }
  }

 private:
  std::map<std::string, double> medians_;
};

}  // namespace

void expect_ratio(std::string name, std::string reference, double aim) {
  ratios().push_back({std::move(name), std::move(reference), aim});
}

void require(bool right, const char* what) {
  if (!right) {
    std::fprintf(stderr, "wrong answer, nothing was timed: %s\n", what);
    std::exit(1);
  }
}

}  // namespace bench

int main(int argc, char** argv) {
  setenv("ORVANE_LOG", "off", 1);
  // Defaults that the command line may override.
  std::vector<char*> arguments = {argv[0], const_cast<char*>("--benchmark_repetitions=11"),
                                  const_cast<char*>("--benchmark_enable_random_interleaving=true"),
                                  const_cast<char*>("--benchmark_report_aggregates_only=true"),
                                  const_cast<char*>("--benchmark_min_time=0.1")};
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  bench::MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.print_ratios();
  return 0;
}
