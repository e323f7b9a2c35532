#include "bench/median_reporter.h"

#include "bench/ratio.h"

namespace bench {

void MedianReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    const bool is_only_one = run.run_type == Run::RT_Iteration && run.repetitions == 1;
    if (run.aggregate_name == "median" || is_only_one) {
      const bool is_real_time = !run.run_name.time_type.empty();
      const double time = is_real_time ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
      medians_[run.run_name.function_name] = {
          time / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e9, is_real_time};
    }
  }
  ConsoleReporter::ReportRuns(runs);
}

const Median& MedianReporter::median(const std::string& name) const {
  const auto found = medians_.find(name);
  require(found != medians_.end(), name.c_str());
  return found->second;
}

}  // namespace bench
