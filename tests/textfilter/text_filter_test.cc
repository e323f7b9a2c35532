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
std::string guarded(const std::string& text, std::size_t capacity) {
  std::string buffer = text.substr(0, capacity);
  buffer.resize(capacity);
  return buffer + kGuard;
}

std::string filter_text(const Rules& rules, const std::string& text, FilterReport& report,
                        std::size_t capacity = 16'384) {
  std::string buffer = guarded(text, capacity);
  do_filtering_bounded(rules, buffer.data(), capacity, report);
  EXPECT_EQ(buffer.substr(capacity), kGuard);
  return {buffer.data(), strnlen(buffer.data(), capacity)};
}

}  // namespace

TEST(TextFilter, Table) {
  struct Row {
    std::vector<std::pair<std::string, std::string>> rules;
    std::string text;
    std::string filtered;
    std::size_t passes;
    FilterOutcome outcome = kFilterFinished;
    std::size_t capacity = 16'384;
    std::size_t messages = 0;
  };
  const std::string grown(1001, 'a');
  const std::string misses = std::string(4'000, 'x') + "!" + std::string(4'000, 'x') + "!";
  const Row kRows[] = {
      {{{"x", ""}}, "axbxc", "abc", 3},
      {{{"ab", "b"}}, "aab", "ab", 1},
      {{{"ab", "b"}}, "aabc", "bc", 3},
      {{{"a", "aa"}}, "ab", grown + "b", 1000, kFilterPassLimit, 8192, 1},
      {{{"foo", "bar"}, {"bar", "baz"}}, "foo", "baz", 2},
      {{{"cat", "dog"}}, "cat and cat", "dog and dog", 2},
      {{{"a", "aa"}}, "a", "aa", 1},
      {{{"bar", "baz"}, {"foo", "bar"}}, "foo", "bar", 2},
      {{{"Cat", "dog"}}, "cat", "cat", 1},
      {{{"a", "aa"}, {"b", "x"}, {"d", "e"}}, "abd", grown + "xe", 1002, kFilterPassLimit, 8192, 2},
      // Nothing special, nothing at all, bytes that are no UTF-8.
      {{{"a.c", "$1\\0&%s"}}, "abc a.c!", "abc $1\\0&%s!", 2},
      {{{"", "x"}, {"a", "b"}}, "a!", "b!", 2},
      {{{"a", "b"}}, "", "", 1},
      {{}, "text", "text", 0},
      {{{std::string(9999, 'x'), "y"}}, misses + std::string(4096, 'x') + "!", misses + "yx!", 2},
      {{{"\xC3", "\xFF\xFE"}}, "\xC3\xA4\x80\xC3", "\xFF\xFE\xA4\x80\xFF\xFE", 2},
      // From a capacity without room for the text to one with room for all. Nothing is done after a
      // stop.
      {{{"1", "22"}, {"22 1", ""}}, "1 1 1", "1 1 1", 0, kFilterRefused, 5},
      {{{"1", "22"}, {"22 1", ""}}, "1 1 1", "22 1 1", 2, kFilterCapacity, 7},
      {{{"1", "22"}, {"22 1", ""}}, "1 1 1", "22 22 1", 3, kFilterCapacity, 8},
      {{{"1", "22"}, {"22 1", ""}}, "1 1 1", "22 22 22", 4, kFilterFinished, 9},
  };
  for (const Row& row : kRows) {
    Rules rules;
    for (const auto& [target, result] : row.rules) {
      rules.push_back(make_rule(target, result));
    }
    FilterReport report;
    test::take_log();
    EXPECT_EQ(filter_text(rules, row.text, report, row.capacity), row.filtered);
    EXPECT_EQ(report.passes, row.passes) << row.text;
    EXPECT_EQ(report.outcome, row.outcome) << row.text;
    EXPECT_EQ(test::take_log(), Log(row.messages, kLimitMessage)) << row.text;
  }
}

// "a" to "b" needs no memory, "b" to "bb" does.
TEST(TextFilter, StopsBeforeARuleThatFindsNoMemory) {
  const Rules rules = {make_rule("a", "b"), make_rule("b", "bb"), make_rule("c", "d")};
  memory_is_short = true;
  FilterReport report;
  EXPECT_EQ(filter_text(rules, "abc", report), "bbc");
  EXPECT_EQ(report.outcome, kFilterNoMemory);
  EXPECT_EQ(report.replacements, (std::vector<std::size_t>{1, 0, 0}));
  char text[] = "abc";
  char* bytes = text;
  test::take_log();
  EXPECT_EQ(do_filtering(rules, bytes), kDevcfgFiltered);
  EXPECT_EQ(test::take_log(), Log{"[do_filtering] Stopped, there is no memory for a rule"});
  EXPECT_STREQ(text, "bbc");
  memory_is_short = false;
}

TEST(TextFilter, RefusesWhatIsNoText) {
  FilterReport report = {kFilterPassLimit, 5, 5, {5}};
  char none[1] = {'x'};
  char* text = nullptr;
  EXPECT_EQ(do_filtering_bounded({make_rule("x", "y")}, nullptr, 10, report), kFilterRefused);
  EXPECT_EQ(report.passes, 0U);
  EXPECT_EQ(report.replacements, std::vector<std::size_t>{0});
  EXPECT_EQ(do_filtering_bounded({}, none, 0, report), kFilterRefused);
  EXPECT_EQ(do_filtering_bounded({}, none, 1, report), kFilterRefused);
  test::take_log();
  EXPECT_EQ(do_filtering({}, text), kDevcfgFiltered);
  EXPECT_EQ(test::take_log(), Log{"[do_filtering] There is no text"});
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
