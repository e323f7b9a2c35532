// The command line of the benchmarks.
#pragma once

#include <string>
#include <vector>

#include "bench/ratio.h"

namespace bench {

struct Options {
  std::vector<Ratio> rows;  // to be measured
  std::string json_path;    // "-" is standard output; empty: no JSON
  bool is_listing = false;  // the benchmarks' names are printed, nothing runs
};

// Reads the command line and starts Google Benchmark with its own options. Ends the program with
// status 0 after --help, and with status 2 and a message on wrong usage.
Options read_options(int argc, char** argv);

}  // namespace bench
