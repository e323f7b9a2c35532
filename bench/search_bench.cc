// Search patterns against RE2's quoting of the same text.
#include <benchmark/benchmark.h>
#include <re2/re2.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "orvaneip.h"

namespace {

using bench::expect_ratio;
using bench::require;

// Returns a line as people type it: words, some with punctuation.
std::string search_line(std::size_t size) {
  static const char* const kWords[] = {"front", "door",  "camera+4", "C:\\rec", "plate", "AB-123",
                                       "price", "$5.00", "(net)",    "it's",    "50%",   "Till"};
  std::mt19937 random(7);
  std::string line = "x";
  while (line.size() < size) {
    line.append(" ").append(kWords[random() % std::size(kWords)]);
    if (random() % 2 == 0) {
      line += std::to_string(random() % 1000);
    }
  }
  line.resize(size, 'x');
  return line;
}

std::string repeated(const char* piece, std::size_t size_bytes) {
  std::string line;
  while (line.size() < size_bytes) {
    line += piece;
  }
  return line;
}

std::string distinct_terms(int count) {
  std::string line;
  for (int i = 0; i < count; ++i) {
    line += "plate" + std::to_string(i) + " ";
  }
  return line;
}

std::string expression_for(const std::string& line) {
  std::string expression;
  check_abnormal_char_for_special_for_mongo(line.c_str(), expression);
  return expression;
}

std::vector<std::string> patterns_for(const std::string& line) {
  std::vector<std::string> patterns;
  check_abnormal_char_for_special_for_SQL(line.c_str(), patterns);
  return patterns;
}

// Returns the expression of a line that has no repeated, leading or trailing separators.
std::string plain_expression_for(const std::string& line) {
  std::string expression;
  for (const char byte : line) {
    if (byte == ' ' || byte == '+') {
      expression += byte == ' ' ? "|" : ".*";
    } else {
      expression += std::string(".?^|*\\[]()$").find(byte) != std::string::npos ? "\\" : "";
      expression += byte;
    }
  }
  return expression;
}

void time_quoting(const std::string& name, const std::string& line) {
  benchmark::RegisterBenchmark(name.c_str(), [line](benchmark::State& state) {
    for (auto _ : state) {
      benchmark::DoNotOptimize(RE2::QuoteMeta(line));
    }
  });
}

void time_expression(const std::string& name, const std::string& line,
                     const std::string& expected) {
  benchmark::RegisterBenchmark(name.c_str(), [line, expected](benchmark::State& state) {
    require(expression_for(line) == expected, "the expression of a search text");
    for (auto _ : state) {
      benchmark::DoNotOptimize(expression_for(line));
    }
  });
}

// `terms` is the number of distinct terms in the line.
void time_patterns(const std::string& name, const std::string& line, std::size_t terms) {
  benchmark::RegisterBenchmark(name.c_str(), [line, terms](benchmark::State& state) {
    const std::vector<std::string> patterns = patterns_for(line);
    require(patterns.size() == terms && std::set(patterns.begin(), patterns.end()).size() == terms,
            "the patterns of a search text");
    for (auto _ : state) {
      benchmark::DoNotOptimize(patterns_for(line));
    }
  });
}

std::size_t count_terms(const std::string& line) {
  const std::vector<std::string> terms = split(line, ' ');
  return std::set(terms.begin(), terms.end()).size();
}

void compare_with_quoting(const std::string& size_name, std::size_t size, double expression_aim) {
  const std::string line = search_line(size);
  const std::string quoting = "quote_" + size_name;
  time_quoting(quoting, line);
  time_expression("expression_" + size_name, line, plain_expression_for(line));
  expect_ratio("expression_" + size_name, quoting, expression_aim);
  time_patterns("patterns_" + size_name, line, count_terms(line));
  expect_ratio("patterns_" + size_name, quoting, 2.5);
}

void declare_doubling() {
  constexpr std::size_t kSize = 100'000;
  time_expression("expression_collapsing", repeated("+ ", kSize), ".*");
  time_expression("expression_collapsing_doubled", repeated("+ ", 2 * kSize), ".*");
  expect_ratio("expression_collapsing_doubled", "expression_collapsing", 2.3);
  const auto backslashes = [](std::size_t size) { return std::string(size, '\\') + "|+"; };
  time_expression("expression_backslashes", backslashes(kSize),
                  std::string(2 * kSize, '\\') + "\\|.*");
  time_expression("expression_backslashes_doubled", backslashes(2 * kSize),
                  std::string(4 * kSize, '\\') + "\\|.*");
  expect_ratio("expression_backslashes_doubled", "expression_backslashes", 2.3);
  // Sizes whose patterns and table fit into a small second-level cache in both runs.
  time_patterns("patterns_distinct", distinct_terms(5'000), 5'000);
  time_patterns("patterns_distinct_doubled", distinct_terms(10'000), 10'000);
  expect_ratio("patterns_distinct_doubled", "patterns_distinct", 2.3);
}

const bool kDeclared = [] {
  compare_with_quoting("100B", 100, 0.95);
  compare_with_quoting("10K", 10 * 1024, 0.80);
  compare_with_quoting("100K", 100 * 1024, 0.85);
  declare_doubling();
  return true;
}();

}  // namespace
