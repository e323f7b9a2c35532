// The measured rows, as a table for people and as JSON for programs.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "bench/median_reporter.h"
#include "bench/ratio.h"

namespace bench {

struct Result {
  Ratio row;
  Median measured;
  Median reference;
  bool is_retried = false;

  double ratio() const { return measured.time_ns / reference.time_ns; }
  bool is_met() const { return row.is_met_by(ratio()); }
};

// Prints one line for each row and a last one that counts them.
void print_table(const std::vector<Result>& results, std::FILE* output);

// Returns {"rows": [...]}; every row has the keys name, reference, ratio, aim (null without one),
// pass (null without an aim), retried, unit (of the two times), time and reference_time.
std::string json_document(const std::vector<Result>& results);

}  // namespace bench
