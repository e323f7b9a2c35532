// Keeps the median times of the benchmarks while the console shows them.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

struct Median {
  double time_ns = 0;  // of one iteration
  bool is_real_time = false;
};

class MedianReporter : public benchmark::ConsoleReporter {
 public:
  using ConsoleReporter::ConsoleReporter;

  void ReportRuns(const std::vector<Run>& runs) override;

  // Returns the median of the benchmark's last repetitions. Ends the program when it did not run.
  const Median& median(const std::string& name) const;

 private:
  std::map<std::string, Median> medians_;
};

}  // namespace bench
