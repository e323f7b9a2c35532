#include <algorithm>
#include <array>
#include <cstring>
#include <regex>

#include "tests/support/config_files.h"
#include "tests/support/library.h"

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
  EXPECT_TRUE(output.ends_with("guard"));
  std::replace(output.begin(), output.end(), '\0', '0');
  return std::to_string(result) + ":" + output.substr(0, 8);
}

// The records in short: "DEVICE(FILTER:ENABLE RULE:TYPE:ENABLE ...)...".
std::string shown(const std::vector<dev_filter>& devices) {
  std::ostringstream text;
  for (const dev_filter& device : devices) {
    text << device.device_id;
    for (const filter& entry : device.filter_list) {
      text << "(" << entry.name << ":" << entry.enable;
      for (const rule& line : entry.rule_list) {
        text << " " << line.name << ":" << line.type << ":" << line.enable;
      }
      text << ")";
    }
  }
  return text.str();
}

// In one line, without the tags and the root before the path.
std::string log_line() {
  std::string text;
  for (const std::string& line : test::take_debug_log()) {
    text += (text.empty() ? "" : "; ") + line.substr(line.find(']') + 2);
  }
  return std::regex_replace(text, std::regex("/[^ ]*(/etc/config)"), "$1");
}

}  // namespace

TEST(DoFiltering, WhichRuleDecides) {
  const filter all = {"F", 1, {kReplaceA, kRecogniseB, kBreakC}};
  const std::string longest(4095, 't');
  rule of_longest = {"R", 0, 1, "", "100%s%n"};
  longest.copy(of_longest.target, 4095);
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
  const std::vector<dev_filter> devices = {{"till", {{"F", 1, {kBreakC, kReplaceA}}}}};
  const std::array<const char*, 2> kRows[] = {
      {"0:########", "0:########"}, {"0:########", "0:########"},  {"1:0#######", "3:########"},
      {"1:00######", "3:0#######"}, {"1:x00#####", "3:\r0######"}, {"1:xy00####", "3:\r\n0#####"}};
  for (int size = -1; size <= 4; ++size) {
    EXPECT_EQ(apply("A", size, devices), kRows[size + 1][0]) << size;
    EXPECT_EQ(apply("C", size, devices), kRows[size + 1][1]) << size;
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

TEST(RuleFile, Table) {
  const std::tuple<std::string, std::string, std::string> kRows[] = {
      {"device_node_list=", "", "There is no rules in /etc/config/kfilter.xml"},
      // Devices without filters are left out.
      {"device_node_list=d,e;d/device_id=D;e/filter_node_list=,,", "", ""},
      // Absent values, a filter without rules, order and repetition.
      {"device_node_list=,e,,d,d,;d/device_id=D;d/filter_node_list=f;e/filter_node_list=g,f;"
       "e/f/name=F;e/f/enable=-3;e/f/rule_node_list=r,,s,r,;e/f/r/name=R;e/f/r/type=2;"
       "e/f/r/enable=1;e/f/s/enable=9",
       "(:0)(F:-3 R:2:1 :-1:9 R:2:1)D(:0)D(:0)",
       "DevNode=[e] Has 2 filters; DevNode=[d] Has 1 filters; DevNode=[d] Has 1 filters"},
      {"device_node_list=d;d/filter_node_list=a, b;d/b/name=not this one", "(:0)(:0)",
       "DevNode=[d] Has 2 filters"},
      // Cut before the last f.
      {"device_node_list=d;d/filter_node_list=f," + std::string(506, 'g') + ",f,f;d/f/name=F",
       "(F:0)(:0)(F:0)", "DevNode=[d] Has 3 filters"}};
  const test::ConfigFiles files;
  for (const auto& [values, records, log] : kRows) {
    test::write_tree(files.rule_file(), "filter", values);
    std::vector<dev_filter> devices(3);
    test::take_log();
    EXPECT_EQ(devcfg_get_filter_rules_list(devices), 0);
    EXPECT_EQ(shown(devices), records);
    EXPECT_EQ(log_line(), log);
    devcfg_free_filter_rules_list(devices);
    EXPECT_TRUE(devices.empty() && log_line() == "devcfg_free_filter_rules_list() free list");
  }
}

TEST(RuleFile, TextsRoundTripAndAreCutToTheirFields) {
  const test::ConfigFiles files;
  const std::string too_long(5000, 'y');
  for (const std::string text : {" ", "\r\n", "<&>\"'", too_long.c_str()}) {
    std::string values = "device_node_list=d;d/filter_node_list=f;d/f/rule_node_list=r";
    for (const char* path : {"device_id", "f/name", "f/r/name", "f/r/target", "f/r/result"}) {
      values.append(";d/").append(path).append("=").append(text);
    }
    test::write_tree(files.rule_file(), "filter", values);
    std::vector<dev_filter> devices;
    ASSERT_EQ(devcfg_get_filter_rules_list(devices), 0);
    const filter& read = devices.at(0).filter_list.at(0);
    EXPECT_EQ(devices[0].device_id, text.substr(0, 255));
    EXPECT_EQ(read.name, text.substr(0, 255));
    rule expected{"", -1, 0, "", ""};
    text.copy(expected.name, 255);
    text.copy(expected.target, 4095);
    text.copy(expected.result, 4095);
    EXPECT_EQ(std::memcmp(&read.rule_list.at(0), &expected, sizeof(rule)), 0);
  }
}

TEST(RuleFile, Failures) {
  const test::ConfigFiles files;
  std::vector<dev_filter> devices(2);
  dev_filter device{"as it was", {}};
  char id[] = "X";
  test::take_log();
  EXPECT_EQ(devcfg_get_filter_rules_list(devices), -1);
  EXPECT_EQ(devcfg_get_filter_rule(id, device), -1);
  EXPECT_EQ(log_line(), "open /etc/config/kfilter.xml fail; open /etc/config/kfilter.xml fail");
  test::write_tree(files.rule_file(), "device_004", "filter_node_list=f");
  devices.resize(2);
  EXPECT_TRUE(devcfg_get_filter_rules_list(devices) == -1 && devices.empty());
  EXPECT_EQ(log_line(), "export tree of /etc/config/kfilter.xml fail");
  EXPECT_EQ(devcfg_get_filter_rule(id, device), 0) << "an unknown device";
  EXPECT_STREQ(device.device_id, "as it was");
}
