#include "textfilter/text_filter.h"

#include <gtest/gtest.h>

#include "bench/literal_filter.h"
#include "foundation/result_codes.h"
#include "tests/support/captured_log.h"

static bool memory_is_short = false;

// The library's own working memory: the test takes it away.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return memory_is_short ? nullptr : ::operator new[](size);
}

namespace {

using bench::make_rule;
using Rules = std::vector<rule>;
using Log = std::vector<std::string>;

const std::string kLimitMessage = "[do_filtering] Match more than 1000 times(!?)";
const std::string kStopMessage = "[do_filtering] Stopped, the text would exceed 4194304 bytes";

const std::string kGuard(32, '\x5A');

// With guard bytes behind it.
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
      // A record whose target has no end.
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
TEST(TextFilter, StopsBeforeARuleThatFindsNoMemory) {
  const Rules rules = {make_rule("a", "b"), make_rule("b", "bb"), make_rule("c", "d")};
  FilterReport report;
  memory_is_short = true;
  EXPECT_EQ(filter_text(rules, "abc", report), "bbc");
  memory_is_short = false;
  EXPECT_EQ(report.outcome, kFilterNoMemory);
  EXPECT_EQ(report.replacements, (std::vector<std::size_t>{1, 0, 0}));
}

TEST(TextFilter, RefusesWhatIsNoText) {
  FilterReport report = {kFilterPassLimit, 5, 5, {5}};
  char none[1] = {'x'};
  char* text = nullptr;
  EXPECT_EQ(do_filtering_bounded({make_rule("x", "y")}, nullptr, 10, report), kFilterRefused);
  EXPECT_TRUE(report.passes == 0 && report.replacements == std::vector<std::size_t>{0});
  EXPECT_EQ(do_filtering_bounded({}, none, 0, report), kFilterRefused);
  EXPECT_EQ(do_filtering_bounded({}, none, 1, report), kFilterRefused);
  EXPECT_EQ(do_filtering({}, text), kDevcfgFiltered);
}

// Without a capacity, what a replacement makes is held to 4 MiB; the text itself is not.
TEST(TextFilter, HoldsResultsTo4MiB) {
  // The text's length, what an x becomes, how often, the message.
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
