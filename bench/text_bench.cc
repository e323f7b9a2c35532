// Filtering texts against RE2 and against the plain steps.
#include <benchmark/benchmark.h>
#include <re2/re2.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/literal_filter.h"
#include "bench/ratio.h"
#include "orvaneip.h"

namespace {

using bench::expect_ratio;
using bench::make_rule;
using bench::require;

const std::string kTarget = "TOTAL EUR";

// Receipt lines with `hits` targets spread over them, none at the end.
std::string receipt(std::size_t size, std::size_t hits) {
  static const char* const kWords[] = {"TILL 04",     "Tea ",  "2.49",    "Total items",
                                       "EUR",         "Bread", "TOTAL C", "12:07:31",
                                       "The cashier", "T4-11", "card",    "\r\n"};
  std::mt19937 random(7);
  std::string text;
  while (text.size() < size) {
    text.append(kWords[random() % std::size(kWords)]) += ' ';
  }
  text.resize(size, '.');
  for (std::size_t i = 0; i < hits; ++i) {
    text.replace(i * (size / hits), kTarget.size(), kTarget);
  }
  return text;
}

// A text, the rules, and a buffer to which each iteration copies the text before it is filtered.
class Filtering {
 public:
  Filtering(std::string text, std::vector<rule> rules)
      : text_(std::move(text)), rules_(std::move(rules)), buffer_(text_.size() + (5 << 20)) {
    filter_literally();
    const std::string expected = buffer_.data();
    filter();
    require(expected == buffer_.data(), "filtering by the plain steps");
  }

  void filter() {
    do_filtering_bounded(rules_, fill(), buffer_.size(), report_);
    benchmark::DoNotOptimize(buffer_.data());
  }

  void filter_literally() {
    bench::filter_literally(rules_, fill(), buffer_.size());
    benchmark::DoNotOptimize(buffer_.data());
  }

  const std::string& text() const { return text_; }
  const std::vector<rule>& rules() const { return rules_; }
  const char* filtered() const { return buffer_.data(); }

 private:
  char* fill() {
    std::memcpy(buffer_.data(), text_.c_str(), text_.size() + 1);
    return buffer_.data();
  }

  std::string text_;
  std::vector<rule> rules_;
  std::vector<char> buffer_;
  FilterReport report_;
};

// One RE2 for each rule, compiled before the clock starts.
class Expressions {
 public:
  explicit Expressions(const Filtering& filtering) : text_(filtering.text()) {
    for (const rule& each : filtering.rules()) {
      expressions_.push_back(std::make_unique<RE2>(RE2::QuoteMeta(each.target), RE2::Latin1));
      results_.emplace_back(each.result);
    }
  }

  const std::string& replace_all() {
    replaced_ = text_;
    for (std::size_t i = 0; i < expressions_.size(); ++i) {
      RE2::GlobalReplace(&replaced_, *expressions_[i], results_[i]);
    }
    return replaced_;
  }

 private:
  const std::string& text_;
  std::vector<std::unique_ptr<RE2>> expressions_;
  std::vector<std::string> results_;
  std::string replaced_;
};

using MakeFiltering = Filtering (*)();

void time_filtering(const std::string& name, MakeFiltering make) {
  benchmark::RegisterBenchmark(name.c_str(), [make](benchmark::State& state) {
    Filtering filtering = make();
    for (auto _ : state) {
      filtering.filter();
    }
  })->Unit(benchmark::kMicrosecond);
}

void compare_with_re2(const std::string& name, double aim, MakeFiltering make) {
  benchmark::RegisterBenchmark((name + "_re2").c_str(), [make](benchmark::State& state) {
    Filtering filtering = make();
    Expressions expressions(filtering);
    require(expressions.replace_all() == filtering.filtered(), "filtering by RE2");
    for (auto _ : state) {
      benchmark::DoNotOptimize(expressions.replace_all());
    }
  })->Unit(benchmark::kMicrosecond);
  expect_ratio(name, name + "_re2", aim);
}

void compare_with_steps(const std::string& name, MakeFiltering make) {
  benchmark::RegisterBenchmark((name + "_steps").c_str(), [make](benchmark::State& state) {
    Filtering filtering = make();
    for (auto _ : state) {
      filtering.filter_literally();
    }
  })->Unit(benchmark::kMicrosecond);
  expect_ratio(name, name + "_steps", 0.005);
}

template <std::size_t kSize, std::size_t kHits>
Filtering receipts() {
  return Filtering(receipt(kSize, kHits), {make_rule(kTarget, "total")});
}

Filtering many_rules() {
  std::vector<rule> rules;
  for (int i = 0; i < 32; ++i) {
    rules.push_back(make_rule("Total item " + std::to_string(i), "item"));
  }
  return Filtering(receipt(4096, 0), rules);
}

// A rule that matches its own result until the limit ends it.
template <std::size_t kSize>
Filtering runaway() {
  return Filtering(receipt(kSize, 0), {make_rule("a", "aa")});
}

// The longest target, which the text nearly contains at each position.
template <std::size_t kSize>
Filtering near_miss() {
  std::string target(kRuleTextBytes - 1, 'a');
  target[target.size() / 2] = 'b';
  return Filtering(std::string(kSize, 'a'), {make_rule(target, "c")});
}

// Results of the greatest length that overlap with the text around them.
template <std::size_t kSize>
Filtering long_overlaps() {
  const std::string target = std::string(kRuleTextBytes - 3, 'a') + "b";
  std::string text;
  while (text.size() < kSize) {
    text += std::string(kRuleTextBytes, 'a') + "bc";
  }
  return Filtering(text, {make_rule(target, "a" + target)});
}

// Sizes that fit into the cache in both runs: the row measures the steps, not the memory.
void declare_doubling(const std::string& name, MakeFiltering once, MakeFiltering twice) {
  time_filtering(name, once);
  time_filtering(name + "_doubled", twice);
  expect_ratio(name + "_doubled", name, 2.3);
}

template <std::size_t kSize, std::size_t kHits>
void declare_receipts(const std::string& name, double aim) {
  time_filtering(name, receipts<kSize, kHits>);
  compare_with_re2(name, aim, receipts<kSize, kHits>);
}

const bool kDeclared = [] {
  constexpr std::size_t kKiB = 1024;
  constexpr std::size_t kMiB = kKiB * kKiB;
  declare_receipts<kKiB, 0>("filter_1K_no_hit", 0.18);
  declare_receipts<kKiB, 10>("filter_1K_10_hits", 0.18);
  declare_receipts<64 * kKiB, 0>("filter_64K_no_hit", 0.13);
  declare_receipts<64 * kKiB, 10>("filter_64K_10_hits", 0.13);
  declare_receipts<64 * kKiB, 999>("filter_64K_999_hits", 0.13);
  declare_receipts<kMiB, 0>("filter_1M_no_hit", 0.13);
  declare_receipts<kMiB, 10>("filter_1M_10_hits", 0.13);
  declare_receipts<kMiB, 999>("filter_1M_999_hits", 0.13);
  compare_with_steps("filter_64K_999_hits", receipts<64 * kKiB, 999>);
  compare_with_steps("filter_1M_999_hits", receipts<kMiB, 999>);
  time_filtering("filter_4K_32_rules", many_rules);
  compare_with_re2("filter_4K_32_rules", 0.09, many_rules);
  declare_doubling("filter_runaway", runaway<256 * kKiB>, runaway<512 * kKiB>);
  time_filtering("filter_1M_runaway", runaway<kMiB>);
  compare_with_steps("filter_1M_runaway", runaway<kMiB>);
  declare_doubling("filter_near_miss", near_miss<256 * kKiB>, near_miss<512 * kKiB>);
  declare_doubling("filter_long_overlaps", long_overlaps<256 * kKiB>, long_overlaps<512 * kKiB>);
  return true;
}();

}  // namespace
