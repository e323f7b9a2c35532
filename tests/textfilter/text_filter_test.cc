#include "textfilter/text_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <limits>

#include "bench/literal_filter.h"
#include "foundation/result_codes.h"
#include "tests/support/captured_log.h"

static bool has_no_memory = false;

// Fails the allocation of the library's working memory.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return has_no_memory ? nullptr : ::operator new[](size);
}

namespace {

using bench::make_rule;
using Rules = std::vector<rule>;
using Log = std::vector<std::string>;

const std::string kLimitMessage = "[do_filtering] Match more than 1000 times(!?)";
const std::string kStopMessage = "[do_filtering] Stopped, the text would exceed 4194304 bytes";

const std::string kGuard(32, '\x5A');

// Returns the text in a buffer of the capacity, followed by guard bytes.
std::string guarded(std::string text, std::size_t capacity) {
  text.resize(capacity);
  return text + kGuard;
}

std::string filter_text(const Rules& rules, const std::string& text, FilterReport& report) {
  std::string buffer = guarded(text, 16'384);
  do_filtering_bounded(rules, buffer.data(), 16'384, report);
  EXPECT_TRUE(buffer.ends_with(kGuard));
  return buffer.c_str();
}

std::string repeated(const std::string& unit, std::size_t size) {
  std::string text;
  while (text.size() < size) {
    text += unit;
  }
  text.resize(size);
  return text;
}

// Returns the least processor time of filtering `size` bytes of the unit, then the target.
double filter_seconds(const std::string& target, const std::string& unit, std::size_t size) {
  const Rules rules = {make_rule(target, "")};
  const std::string text = repeated(unit, size);
  std::clock_t least = std::numeric_limits<std::clock_t>::max();
  for (int i = 0; i < 5; ++i) {
    std::string buffer = text + "!" + target + "!";
    FilterReport report;
    const std::clock_t start = std::clock();
    do_filtering_bounded(rules, buffer.data(), buffer.size() + 1, report);
    least = std::min(least, std::clock() - start);
    EXPECT_TRUE(buffer.c_str() == text + "!!") << target.size();
  }
  return static_cast<double>(least) / CLOCKS_PER_SEC;
}

}  // namespace

TEST(TextFilter, Table) {
  struct Row {
    std::vector<std::pair<std::string, std::string>> rules;
    std::string text;
    std::string filtered;
    std::size_t passes;
    std::size_t messages = 0;
  };
  const std::string grown(1001, 'a'), near(4'000, 'x'), misses = near + "!" + near + "!";
  const Row kRows[] = {
      {{{"x", ""}}, "axbxc", "abc", 3},
      {{{"ab", "b"}}, "aab", "ab", 1},
      {{{"ab", "b"}}, "aabc", "bc", 3},
      {{{"a", "aa"}}, "ab", grown + "b", 1000, 1},
      {{{"foo", "bar"}, {"bar", "baz"}}, "foo", "baz", 2},
      {{{"cat", "dog"}}, "cat and cat", "dog and dog", 2},
      {{{"a", "aa"}}, "a", "aa", 1},
      {{{"bar", "baz"}, {"foo", "bar"}}, "foo", "bar", 2},
      {{{"Cat", "dog"}}, "cat", "cat", 1},
      {{{"a", "aa"}, {"b", "x"}, {"d", "e"}}, "abd", grown + "xe", 1002, 2},
      {{{"", "x"}, {"a", "b"}}, "a!", "b!", 2},
      {{}, "text", "text", 0},
      // A record whose target has no terminator.
      {{{std::string(9999, 'x'), "y"}}, misses + std::string(4096, 'x') + "!", misses + "yx!", 2},
  };
  for (const Row& row : kRows) {
    Rules rules;
    for (const auto& [target, result] : row.rules) {
      rules.push_back(make_rule(target, result));
    }
    FilterReport report;
    test::take_log();
    EXPECT_EQ(filter_text(rules, row.text, report), row.filtered);
    EXPECT_EQ(report.passes, row.passes) << row.text;
    EXPECT_EQ(report.outcome, row.messages > 0 ? kFilterPassLimit : kFilterFinished) << row.text;
    EXPECT_EQ(test::take_log(), Log(row.messages, kLimitMessage)) << row.text;
  }
}

// "a" to "b" needs no memory, "b" to "bb" does.
TEST(TextFilter, EndsBeforeARuleThatGetsNoMemory) {
  const Rules rules = {make_rule("a", "b"), make_rule("b", "bb"), make_rule("c", "d")};
  FilterReport report;
  has_no_memory = true;
  EXPECT_EQ(filter_text(rules, "abc", report), "bbc");
  has_no_memory = false;
  EXPECT_EQ(report.outcome, kFilterNoMemory);
  EXPECT_EQ(report.replacements, (std::vector<std::size_t>{1, 0, 0}));
}

TEST(TextFilter, RefusesTextsThatAreNullOrNotTerminated) {
  FilterReport report = {kFilterPassLimit, 5, 5, {5}};
  char unterminated[1] = {'x'};
  char* text = nullptr;
  EXPECT_EQ(do_filtering_bounded({make_rule("x", "y")}, nullptr, 10, report), kFilterRefused);
  EXPECT_TRUE(report.passes == 0 && report.replacements == std::vector<std::size_t>{0});
  EXPECT_EQ(do_filtering_bounded({}, unterminated, 0, report), kFilterRefused);
  EXPECT_EQ(do_filtering_bounded({}, unterminated, 1, report), kFilterRefused);
  EXPECT_EQ(do_filtering({}, text), kDevcfgFiltered);
}

// A target, and units that texts full of its start repeat.
struct Hostile {
  Hostile(const char* period, std::size_t size) {
    const std::string start = repeated(period, size - 1);
    target = start + "c";
    const std::string near_miss = start.substr(0, size / 2) + "x" + target.substr(size / 2 + 1);
    units = {period, size > 1 ? start : near_miss, near_miss};
  }
  double most_seconds(std::size_t text_size) const {
    double most = 0;
    for (const std::string& unit : units) {
      most = std::max(most, filter_seconds(target, unit, text_size));
    }
    return most;
  }
  std::string target;
  std::vector<std::string> units;
};

// The time grows with the text, and not with the target. Of three comparisons one must hold, since
// others use the machine as well; quadratic time is twice beyond either factor.
TEST(TextFilter, TakesLinearTimeOnHostileTexts) {
  for (const char* period : {"a", "ab", "aab"}) {
    for (const std::size_t size : {1U, 2U, 16U, 63U, 64U, 256U, 4095U}) {
      const Hostile hostile(period, size);
      bool is_linear = false;
      for (int i = 0; i < 3 && !is_linear; ++i) {
        const double seconds = hostile.most_seconds(512 * 1024);
        is_linear = seconds < 24 * hostile.most_seconds(64 * 1024) &&
                    (size <= 256 || seconds < 6 * Hostile(period, 256).most_seconds(512 * 1024));
      }
      EXPECT_TRUE(is_linear) << size << period;
    }
  }
}

// Without a capacity, the outcome of a replacement is limited to 4 MiB; the text itself is not.
TEST(TextFilter, LimitsResultsTo4MiB) {
  // The text's length, the result for an x, the number of replacements, the message.
  const std::tuple<std::size_t, std::string, std::size_t, std::string> kRows[] = {
      {4'194'303, "y", 1000, kLimitMessage}, {4'194'303, "yy", 0, kStopMessage},
      {4'194'302, "yy", 1, kStopMessage},    {4'194'304, "y", 0, kStopMessage},
      {4'194'304, "", 1000, kLimitMessage},
  };
  for (const auto& [length, result, replacements, message] : kRows) {
    const std::string rest(length - replacements, 'x');
    const std::string expected = std::string(replacements * result.size(), 'y') + rest;
    const std::size_t capacity = std::max(length + 1, kFilteredTextBytes);
    std::string buffer = guarded(std::string(length, 'x'), capacity);
    char* text = buffer.data();
    test::take_log();
    EXPECT_EQ(do_filtering({make_rule("x", result)}, text), kDevcfgFiltered);
    EXPECT_TRUE(expected == text && text == buffer.data()) << length << result;
    EXPECT_TRUE(buffer.ends_with(kGuard));
    EXPECT_EQ(test::take_log(), Log{message});
  }
}
