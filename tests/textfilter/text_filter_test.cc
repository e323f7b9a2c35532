#include "textfilter/text_filter.h"

#include <gtest/gtest.h>

#include <random>

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

// A buffer of a capacity with guard bytes around it.
class GuardedText {
 public:
  GuardedText(const std::string& text, std::size_t capacity)
      : bytes_(kGuard + text.substr(0, capacity)) {
    bytes_.resize(kGuard.size() + capacity);
    bytes_ += kGuard;
  }
  ~GuardedText() { EXPECT_TRUE(bytes_.starts_with(kGuard) && bytes_.ends_with(kGuard)); }

  char* data() { return &bytes_[kGuard.size()]; }

 private:
  const std::string kGuard = std::string(32, '\x5A');
  std::string bytes_;
};

std::string filter_text(const Rules& rules, const std::string& text, FilterReport& report,
                        std::size_t capacity = 16'384) {
  GuardedText buffer(text, capacity);
  do_filtering_bounded(rules, buffer.data(), capacity, report);
  return {buffer.data(), strnlen(buffer.data(), capacity)};
}

// Both ways must agree in everything that can be seen. True when they do.
bool agrees_with_steps(const Rules& rules, const std::string& text, std::size_t capacity) {
  std::vector<char> expected(capacity);
  std::memcpy(expected.data(), text.c_str(), text.size() + 1);
  const bench::LiteralOutcome steps = bench::filter_literally(rules, expected.data(), capacity);
  FilterReport report;
  test::take_log();
  const std::string filtered = filter_text(rules, text, report, capacity);
  const FilterOutcome outcome = steps.met_capacity         ? kFilterCapacity
                                : steps.limit_messages > 0 ? kFilterPassLimit
                                                           : kFilterFinished;
  return filtered == expected.data() && report.passes == steps.passes &&
         report.replacements == steps.replacements && report.outcome == outcome &&
         test::take_log() == Log(static_cast<std::size_t>(steps.limit_messages), kLimitMessage);
}

std::string random_text(std::mt19937& random, std::size_t longest) {
  std::string text(random() % (longest + 1), 'a');
  std::generate(text.begin(), text.end(), [&] { return "aab"[random() % 3]; });
  return text;
}

// Targets that the text is likely to hold, results that contain them.
Rules random_rules(std::mt19937& random, const std::string& text, std::size_t longest) {
  Rules rules(1 + random() % 3);
  for (rule& made : rules) {
    const std::string target = random() % 3 == 0
                                   ? random_text(random, longest)
                                   : text.substr(random() % (text.size() + 1), random() % longest);
    made = make_rule(target, random() % 4 == 0
                                 ? random_text(random, 1) + target + random_text(random, 1)
                                 : random_text(random, longest));
  }
  return rules;
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
  const Row kRows[] = {
      {{{"x", ""}}, "axbxc", "abc", 3},
      {{{"ab", "b"}}, "aab", "ab", 1},
      {{{"ab", "b"}}, "aabc", "bc", 3},
      {{{"a", "aa"}}, "ab", grown + "b", 1000, kFilterPassLimit, 8192, 1},
      {{{"foo", "bar"}, {"bar", "baz"}}, "foo", "baz", 2},
      {{{"bar", "baz"}, {"foo", "bar"}}, "foo", "bar", 2},
      {{{"Cat", "dog"}}, "cat", "cat", 1},
      {{{"a", "aa"}, {"b", "x"}, {"d", "e"}}, "abd", grown + "xe", 1002, kFilterPassLimit, 8192, 2},
      // Nothing special, nothing at all, bytes that are no UTF-8.
      {{{"a.c", "$1\\0&%s"}}, "abc a.c!", "abc $1\\0&%s!", 2},
      {{{"", "x"}, {"a", "b"}}, "a!", "b!", 2},
      {{{"a", "b"}}, "", "", 1},
      {{}, "text", "text", 0},
      {{{std::string(9999, 'x'), "y"}}, std::string(4096, 'x') + "!", "yx!", 2},
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

TEST(TextFilter, HasTheOutcomeOfTheSteps) {
  std::mt19937 random(41);
  for (int i = 0; i < 100'000; ++i) {
    const bool is_long = i % 16 == 0;
    const std::string text = random_text(random, is_long ? 300 : 12);
    const Rules rules = random_rules(random, text, is_long ? 40 : 4);
    const std::size_t room = i % 8 == 1 ? 6000 : random() % 40;
    ASSERT_TRUE(agrees_with_steps(rules, text, text.size() + 1 + room))
        << i << ": " << text << ", " << rules[0].target << " to " << rules[0].result;
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
  std::string text = "abc";
  char* bytes = text.data();
  test::take_log();
  EXPECT_EQ(do_filtering(rules, bytes), kDevcfgFiltered);
  EXPECT_EQ(test::take_log(), Log{"[do_filtering] Stopped, there is no memory for a rule"});
  EXPECT_EQ(text, "bbc");
  memory_is_short = false;
}

TEST(TextFilter, LongestRulesHaveTheOutcomeOfTheSteps) {
  const std::string longest(kRuleTextBytes - 1, 'a');
  const std::string almost = longest.substr(1);
  std::string broken = longest;
  broken[2000] = 'b';
  const std::string text = std::string(9000, 'a') + almost + "b" + broken + "c" + broken + "aac";
  for (const std::size_t capacity : {5'000'000UL, text.size() + 10'000}) {
    EXPECT_TRUE(agrees_with_steps(
        {make_rule(almost + "b", "a"), make_rule(broken.substr(1), broken)}, text, capacity));
    EXPECT_TRUE(
        agrees_with_steps({make_rule(broken, longest), make_rule(longest, "b")}, text, capacity));
    EXPECT_TRUE(agrees_with_steps({make_rule("b", longest), make_rule("ac", "")}, text, capacity));
    EXPECT_TRUE(agrees_with_steps({make_rule(broken, "")}, text, capacity));
  }
}

TEST(TextFilter, RefusesWhatIsNoText) {
  FilterReport report = {kFilterPassLimit, 5, 5, {5}};
  char none[1] = {'x'};
  EXPECT_EQ(do_filtering_bounded({make_rule("x", "y")}, nullptr, 10, report), kFilterRefused);
  EXPECT_EQ(report.passes, 0U);
  EXPECT_EQ(report.replacements, std::vector<std::size_t>{0});
  EXPECT_EQ(do_filtering_bounded({}, none, 0, report), kFilterRefused);
  EXPECT_EQ(do_filtering_bounded({}, none, 1, report), kFilterRefused);
  char* text = nullptr;
  test::take_log();
  EXPECT_EQ(do_filtering({}, text), kDevcfgFiltered);
  EXPECT_EQ(test::take_log(), Log{"[do_filtering] There is no text"});
}

// Without a capacity, what a replacement makes is held to 4 MiB; the text itself is not.
TEST(TextFilter, HoldsResultsTo4MiB) {
  // The text's length, the rule, how often it is applied, the messages.
  const std::tuple<std::size_t, std::string, std::string, std::size_t, Log> kRows[] = {
      {4'194'303, "y", "z", 0, {}},
      {4'194'303, "x", "y", 1000, {kLimitMessage}},
      {4'194'303, "x", "yy", 0, {kStopMessage}},
      {4'194'302, "x", "yy", 1, {kStopMessage}},
      {4'194'304, "y", "z", 0, {}},
      {4'194'304, "x", "y", 0, {kStopMessage}},
      {4'194'304, "x", "", 1000, {kLimitMessage}},
      {4'194'306, "xx", "y", 0, {kStopMessage}},
  };
  for (const auto& [length, target, result, replacements, log] : kRows) {
    std::string expected;
    for (std::size_t i = 0; i < replacements; ++i) {
      expected += result;
    }
    expected.append(length - replacements * target.size(), 'x');
    GuardedText buffer(std::string(length, 'x'), std::max(length + 1, kFilteredTextBytes));
    char* text = buffer.data();
    test::take_log();
    EXPECT_EQ(do_filtering({make_rule(target, result)}, text), kDevcfgFiltered);
    EXPECT_TRUE(expected == text && text == buffer.data()) << length << target << result;
    EXPECT_EQ(test::take_log(), log);
  }
}
