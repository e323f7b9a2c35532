#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "orvaneip.h"
#include "tests/support/captured_log.h"

namespace {

const rule kReplaceA = {"R", 0, 1, "A", "xyz"};
const rule kRecogniseA = {"R", 1, 1, "A", ""};
const rule kRecogniseB = {"R", 1, 1, "B", "unused"};
const rule kBreakC = {"R", 2, 1, "C", "unused"};

// The result, a colon, and the eight bytes of the output buffer, zeros shown as "0". They are "#"
// before the call.
std::string apply(std::string text, int size, const std::vector<dev_filter>& devices) {
  std::string output = "########guard";
  char id[] = "tILL";
  const int result = devcfg_do_filtering(text.data(), -9, output.data(), size, id, devices);
  EXPECT_EQ(output.substr(8), "guard");
  std::replace(output.begin(), output.end(), '\0', '0');
  return std::to_string(result) + ":" + output.substr(0, 8);
}

}  // namespace

TEST(DoFiltering, WhichRuleDecides) {
  const filter all = {"F", 1, {kReplaceA, kRecogniseB, kBreakC}};
  const std::string longest(4095, 't');
  rule of_longest = {"R", 0, 1, "", "100%s%n"};
  longest.copy(of_longest.target, longest.size());
  const std::tuple<std::string, std::vector<filter>, std::string> kRows[] = {
      {"A", {all}, "1:xyz00000"},
      {"B", {all}, "2:00000000"},
      {"C", {all}, "3:\r\n000000"},
      {"", {all}, "0:00000000"},
      {"a", {all}, "0:00000000"},
      // Without a rule of type 0 before it nothing is cleared.
      {"B", {{"F", 1, {kRecogniseB, kReplaceA}}}, "2:########"},
      {"C", {{"F", -1, {kBreakC}}}, "3:\r\n0#####"},
      {"A", {{"F", 1, {{"R", 0, 0, "A", "xyz"}}}}, "0:########"},
      // The first one decides, in this filter or the next.
      {"A", {{"F", 1, {kRecogniseA}}, all}, "2:########"},
      {"A", {{"F", 0, {kRecogniseA}}, all}, "1:xyz00000"},
      {"A", {{"F", 1, {{"R", -1, 1, "A", ""}, {"R", 3, 1, "A", ""}, kReplaceA}}}, "1:xyz00000"},
      {"", {{"F", 1, {{"R", 0, 1, "", "e"}}}}, "1:e0000000"},
      {longest, {{"F", 1, {of_longest}}}, "1:100%s%00"},
  };
  for (const auto& [text, filters, outcome] : kRows) {
    EXPECT_EQ(apply(text, 8, {{"other", {all}}, {"Till", filters}, {"till", {all}}}), outcome)
        << text;
  }
}

TEST(DoFiltering, OutputSizes) {
  const std::pair<const char*, const char*> kOutcomes[] = {
      {"0:########", "0:########"},   {"1:0#######", "3:########"},
      {"1:00######", "3:0#######"},   {"1:x00#####", "3:\r0######"},
      {"1:xy00####", "3:\r\n0#####"}, {"1:xyz00###", "3:\r\n0#####"}};
  const std::vector<dev_filter> devices = {{"till", {{"F", 1, {kBreakC, kReplaceA}}}}};
  EXPECT_EQ(apply("A", -1, devices), "0:########");
  for (int size = 0; size <= 5; ++size) {
    EXPECT_EQ(apply("A", size, devices), kOutcomes[size].first) << size;
    EXPECT_EQ(apply("C", size, devices), kOutcomes[size].second) << size;
  }
}

TEST(DoFiltering, TellsWhatIsPassedOver) {
  const std::vector<dev_filter> devices = {
      {"till",
       {{"F", 0, {}}, {"F", 1, {{"R", 0, 0, "t%s", "r"}, {"R", -1, 1, "A", ""}, kRecogniseA}}}}};
  char output[8];
  test::take_log();
  EXPECT_EQ(devcfg_match_filters("A", output, 8, "till", {}), 0);
  EXPECT_EQ(devcfg_match_filters("A", output, 8, "tills", devices), 0);
  EXPECT_EQ(devcfg_match_filters("A", output, 8, "TILL", devices), 2);
  const std::vector<std::string> expected = {
      "[libdevcfg] devcfg_do_filtering() No filter rules for device_id=[tills]",
      "[libdevcfg] devcfg_do_filtering() pchDevId=[TILL],chFilterName=[F], nEnable=[0]. This "
      "filter is disabled.",
      "DevId=[TILL],RuleName=[R], Type=[0], enable=[0],target=[t%s],Result=[r]. This rule is "
      "disabled.",
      "[libdevcfg] pchDevId=[TILL],unknown type=[-1]"};
  EXPECT_EQ(test::take_debug_log(), expected);
}
