// Speed is told as a ratio of two benchmarks of the same run.
#pragma once

#include <string>

namespace bench {

// Has main() print median(name) / median(reference) beside the aim after the run: of the processor
// time, or of the real time where a benchmark says UseRealTime or UseManualTime.
void expect_ratio(std::string name, std::string reference, double aim);

// Ends the program with a message when `right` is false: a wrong answer is not timed.
void require(bool right, const char* what);

}  // namespace bench
