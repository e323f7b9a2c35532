#include "bench/options.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <regex>
#include <string_view>

namespace bench {
namespace {

constexpr char kUsage[] =
    R"(orvaneip_bench [--json FILE] [--benchmark_filter=REGEX] [--benchmark_OPTION=VALUE ...]

Runs the benchmarks and prints each row: the ratio of two benchmarks of this run, its aim, and
whether it was met. Rows that missed run once more, and the better result counts.

  --json FILE                   write the rows to FILE as JSON; - is standard output
  --benchmark_filter=REGEX      run the rows whose name or reference matches; with -REGEX the others
  --benchmark_repetitions=N     of each benchmark; their medians count (11)
  --benchmark_min_time=SECONDS  of each repetition (0.1)
  --benchmark_list_tests        print the names of the benchmarks, run nothing
  --help                        print this text

Google Benchmark's other options are accepted as well.
Exit status: 0 all aims were met, 1 an aim was missed or an answer was wrong, 2 wrong usage.
)";

[[noreturn]] void end_with_usage_error(const std::string& message) {
  std::fprintf(stderr, "orvaneip_bench: %s\nTry --help.\n", message.c_str());
  std::exit(2);
}

// Moves our own options from the arguments into `options`; those of Google Benchmark remain.
void take_own_options(std::vector<char*>& arguments, Options& options) {
  constexpr std::string_view kJson = "--json";
  std::vector<char*> remaining;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      std::fputs(kUsage, stdout);
      std::exit(0);
    }
    if (argument == kJson && i + 1 < arguments.size()) {
      options.json_path = arguments[++i];
    } else if (argument.starts_with("--json=")) {
      options.json_path = argument.substr(kJson.size() + 1);
    } else {
      remaining.push_back(arguments[i]);
      options.is_listing |=
          argument == "--benchmark_list_tests" || argument == "--benchmark_list_tests=true";
      continue;
    }
    if (options.json_path.empty()) {
      end_with_usage_error("--json needs a file");
    }
  }
  arguments = std::move(remaining);
}

// The command line takes precedence over the defaults. Google Benchmark keeps the program's name.
void start_google_benchmark(const char* program, const std::vector<char*>& given) {
  static std::vector<std::string> texts = {
      program, "--benchmark_repetitions=11", "--benchmark_enable_random_interleaving=true",
      "--benchmark_report_aggregates_only=true", "--benchmark_min_time=0.1"};
  texts.insert(texts.end(), given.begin(), given.end());
  std::vector<char*> arguments;
  for (std::string& text : texts) {
    arguments.push_back(text.data());
  }
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (count > 1) {
    end_with_usage_error(std::string("unknown option or value: ") + arguments[1]);
  }
}

std::vector<Ratio> chosen_rows() {
  const std::string filter = benchmark::GetBenchmarkFilter();
  std::vector<Ratio> rows;
  try {
    rows = matching_ratios(filter);
  } catch (const std::regex_error& error) {
    end_with_usage_error("--benchmark_filter=" + filter + ": " + error.what());
  }
  if (rows.empty()) {
    end_with_usage_error("--benchmark_filter=" + filter + ": no row matches");
  }
  return rows;
}

}  // namespace

Options read_options(int argc, char** argv) {
  Options options;
  std::vector<char*> arguments(argv + 1, argv + argc);
  take_own_options(arguments, options);
  start_google_benchmark(argv[0], arguments);
  options.rows = chosen_rows();
  return options;
}

}  // namespace bench
