// Speed is reported as rows: each is the ratio of two benchmarks of the same run, with an aim.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace bench {

struct Ratio {
  std::string name;       // of the benchmark that is measured
  std::string reference;  // of the benchmark it is compared with
  std::optional<double> aim;

  bool is_met_by(double value) const { return !aim || value <= *aim; }
};

// Registers the row median(name) / median(reference), which is at most `aim`; without one it is
// only reported. Medians are of the processor time, since others use the machine as well, or of the
// real time where a benchmark says UseRealTime or UseManualTime: it waits for the disk.
void expect_ratio(std::string name, std::string reference, std::optional<double> aim = {});

// Returns all registered rows.
const std::vector<Ratio>& ratios();

// Returns those whose name or reference contains a match of Google Benchmark's filter: a regular
// expression, after a '-' one that must not match. Throws std::regex_error when it is not valid.
std::vector<Ratio> matching_ratios(const std::string& filter);

// Ends the program with status 1 and a message when `right` is false: a wrong answer is not timed.
void require(bool right, const char* what);

}  // namespace bench
