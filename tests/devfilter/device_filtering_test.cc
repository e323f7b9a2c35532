#include <gtest/gtest.h>

#include <algorithm>

#include "orvaneip.h"
#include "tests/support/captured_log.h"

namespace {

using Lines = std::vector<std::string>;

struct Rule {
  int type;
  int enable;
  std::string target;
  std::string result;
};

filter filter_of(int enable, const std::vector<Rule>& rules) {
  filter made{"F", enable, {}};
  for (const Rule& given : rules) {
    rule& line = made.rule_list.emplace_back(rule{"R", given.type, given.enable, "", ""});
    given.target.copy(line.target, sizeof(line.target) - 1);
    given.result.copy(line.result, sizeof(line.result) - 1);
  }
  return made;
}

// The result, a colon, and the eight bytes of the output buffer, zeros shown as "0". They are "#"
// before the call.
std::string apply(std::string text, int size, const std::vector<dev_filter>& devices) {
  std::string output = "########guard";
  std::string again = output;
  char id[] = "tILL";
  const int result = devcfg_do_filtering(text.data(), -9, output.data(), size, id, devices);
  const Lines log = test::take_debug_log();
  EXPECT_EQ(devcfg_match_filters(text.data(), again.data(), size, id, devices), result);
  EXPECT_EQ(again, output);
  EXPECT_EQ(test::take_debug_log(), log);
  EXPECT_EQ(output.substr(8), "guard");
  std::replace(output.begin(), output.end(), '\0', '0');
  return std::to_string(result) + ":" + output.substr(0, 8);
}

const Rule kReplaceA = {0, 1, "A", "xyz"};
const Rule kRecogniseB = {1, 1, "B", "unused"};
const Rule kBreakC = {2, 1, "C", "unused"};

}  // namespace

TEST(DoFiltering, WhichRuleDecides) {
  struct Row {
    std::string text;
    std::vector<filter> filters;
    std::string outcome;
  };
  const std::vector<filter> all = {filter_of(1, {kReplaceA, kRecogniseB, kBreakC})};
  const std::string longest(4095, 't');
  const Row kRows[] = {
      {"A", all, "1:xyz00000"},
      {"B", all, "2:00000000"},
      {"C", all, "3:\r\n000000"},
      {"", all, "0:00000000"},
      // Not exactly the text.
      {"a", all, "0:00000000"},
      {"A ", all, "0:00000000"},
      {"A\n", all, "0:00000000"},
      {"AA", all, "0:00000000"},
      // Without a rule of type 0 before it nothing is cleared.
      {"B", {filter_of(1, {kRecogniseB, kReplaceA})}, "2:########"},
      {"C", {filter_of(-1, {kBreakC})}, "3:\r\n0#####"},
      {"A", {filter_of(1, {{0, 0, "A", "xyz"}})}, "0:########"},
      {"A", {filter_of(0, {kReplaceA})}, "0:########"},
      {"A", {}, "0:########"},
      // The first one decides, in this filter or the next.
      {"A", {filter_of(1, {{1, 1, "A", ""}}), filter_of(1, {kReplaceA})}, "2:########"},
      {"A", {filter_of(0, {{1, 1, "A", ""}}), filter_of(1, {kReplaceA})}, "1:xyz00000"},
      {"A", {filter_of(1, {{-1, 1, "A", ""}, {3, 1, "A", ""}, kReplaceA})}, "1:xyz00000"},
      {"", {filter_of(1, {{0, 1, "", "e"}})}, "1:e0000000"},
      {longest, {filter_of(1, {{0, 1, longest, "100%s%n"}})}, "1:100%s%00"},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(apply(row.text, 8, {{"other", all}, {"Till", row.filters}, {"till", all}}),
              row.outcome)
        << row.text;
  }
}

TEST(DoFiltering, OutputSizes) {
  const std::pair<const char*, const char*> kOutcomes[] = {
      {"0:########", "0:########"},  {"1:0#######", "3:########"},   {"1:00######", "3:0#######"},
      {"1:x00#####", "3:\r0######"}, {"1:xy00####", "3:\r\n0#####"}, {"1:xyz00###", "3:\r\n0#####"},
  };
  const std::vector<dev_filter> devices = {{"till", {filter_of(1, {kBreakC, kReplaceA})}}};
  EXPECT_EQ(apply("A", -1, devices), "0:########");
  for (int size = 0; size <= 5; ++size) {
    EXPECT_EQ(apply("A", size, devices), kOutcomes[size].first) << size;
    EXPECT_EQ(apply("C", size, devices), kOutcomes[size].second) << size;
  }
}

TEST(DoFiltering, TellsWhatIsPassedOver) {
  const std::vector<dev_filter> devices = {
      {"till",
       {filter_of(0, {{0, 0, "A", ""}}),
        filter_of(1, {{0, 0, "t%s", "r"}, {-1, 1, "A", ""}, {1, 1, "A", ""}})}}};
  test::take_log();
  EXPECT_EQ(apply("A", 8, {}), "0:########");
  EXPECT_TRUE(test::take_log().empty());
  char output[8];
  EXPECT_EQ(devcfg_match_filters("A", output, 8, "tills", devices), 0);
  EXPECT_EQ(devcfg_match_filters("A", output, 8, "TILL", devices), 2);
  const Lines expected = {
      "[libdevcfg] devcfg_do_filtering() No filter rules for device_id=[tills]",
      "[libdevcfg] devcfg_do_filtering() pchDevId=[TILL],chFilterName=[F], nEnable=[0]. This "
      "filter is disabled.",
      "DevId=[TILL],RuleName=[R], Type=[0], enable=[0],target=[t%s],Result=[r]. This rule is "
      "disabled.",
      "[libdevcfg] pchDevId=[TILL],unknown type=[-1]"};
  EXPECT_EQ(test::take_debug_log(), expected);
}
