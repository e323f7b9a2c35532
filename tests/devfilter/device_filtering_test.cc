#include <algorithm>
#include <cstring>
#include <regex>
#include <sstream>

#include "tests/support/config_files.h"
#include "tests/support/library.h"

namespace {

// Returns the records as "DEVICE(FILTER:ENABLE RULE:TYPE:ENABLE ...)...".
std::string summary(const std::vector<dev_filter>& devices) {
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

// Returns the log in one line, without the tags and the root before the path.
std::string log_line() {
  std::string text;
  for (const std::string& line : test::take_debug_log()) {
    text += (text.empty() ? "" : "; ") + line.substr(line.find(']') + 2);
  }
  return std::regex_replace(text, std::regex("/[^ ]*(/etc/config)"), "$1");
}

}  // namespace

TEST(DoFiltering, UsesTheFirstDeviceIgnoringCaseAndLogsWhatItSkips) {
  const rule recognise = {"R", 1, 1, "A", ""}, replace = {"R", 0, 1, "A", "xyz"};
  const std::vector<dev_filter> devices = {
      {"other", {{"F", 1, {replace}}}},
      {"till",
       {{"F", 0, {}}, {"F", 1, {{"R", 0, 0, "t%s", "r"}, {"R", -1, 1, "A", ""}, recognise}}}},
      {"TILL", {{"F", 1, {replace}}}}};
  char output[] = "as it was";
  test::take_log();
  EXPECT_EQ(devcfg_match_filters("A", output, 9, "till", {}), 0);
  EXPECT_EQ(devcfg_match_filters("A", output, 9, "tills", devices), 0);
  EXPECT_EQ(devcfg_match_filters("A", output, 0, "other", devices), 0);
  EXPECT_EQ(devcfg_match_filters("A", output, -1, "other", devices), 0);
  EXPECT_EQ(devcfg_match_filters("A", output, 9, "TILL", devices), 2);
  EXPECT_STREQ(output, "as it was");
  const std::vector<std::string> expected = {
      "[libdevcfg] devcfg_do_filtering() No filter rules for device_id=[tills]",
      "[libdevcfg] devcfg_do_filtering() pchDevId=[TILL],chFilterName=[F], nEnable=[0]. This "
      "filter is disabled.",
      "DevId=[TILL],RuleName=[R], Type=[0], enable=[0],target=[t%s],Result=[r]. This rule is "
      "disabled.",
      "[libdevcfg] pchDevId=[TILL],unknown type=[-1]"};
  EXPECT_EQ(test::take_debug_log(), expected);
  char text[] = "A", id[] = "Other";
  for (std::size_t size = 1; size <= 6; ++size) {
    std::string written(8, '#');
    EXPECT_EQ(devcfg_do_filtering(text, -9, written.data(), static_cast<int>(size), id, devices),
              1);
    std::string cut = std::string("xyz").substr(0, size > 2 ? size - 2 : 0);
    cut.resize(size);
    EXPECT_EQ(written, cut.append(8 - size, '#'));
  }
}

TEST(DoFiltering, ReadsFieldsWithoutTerminatorUpToTheirSize) {
  std::vector<dev_filter> devices = {{"", {{"", 1, {{"", 0, 1, "", ""}}}}}};
  rule& full = devices[0].filter_list[0].rule_list[0];
  std::memset(devices[0].device_id, 'X', kFilterDeviceIdBytes);
  std::memset(full.target, 't', kRuleTextBytes);
  std::memset(full.result, 'r', kRuleTextBytes);
  const std::string id(kFilterDeviceIdBytes, 'x'), text(kRuleTextBytes, 't');
  std::string output(kRuleTextBytes + 2, '#');
  const auto match = [&](const std::string& input, const std::string& device_id) {
    return devcfg_match_filters(input.c_str(), output.data(), static_cast<int>(output.size()),
                                device_id.c_str(), devices);
  };
  EXPECT_EQ(match(text, id), 1);
  EXPECT_EQ(output.c_str(), std::string(kRuleTextBytes, 'r'));
  EXPECT_EQ(match(text + "t", id) + match(text, id + "x"), 0);
  EXPECT_EQ(test::take_debug_log().size(), 1U) << "the unknown device";
}

TEST(RuleFile, Table) {
  const std::string kNoFile = "open /etc/config/kfilter.xml fail";
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
      // Cut before the last f.
      {"device_node_list=d;d/filter_node_list=f, b," + std::string(kFilterListBytes - 9, 'g') +
           ",f,f;d/f/name=F;d/b/name=not this one",
       "(F:0)(:0)(:0)(F:0)", "DevNode=[d] Has 4 filters"}};
  const test::ConfigFiles files;
  std::vector<dev_filter> devices(2);
  dev_filter device{"as it was", {}};
  char id[] = "X";
  EXPECT_EQ(devcfg_get_filter_rules_list(devices) + devcfg_get_filter_rule(id, device), -2);
  EXPECT_EQ(log_line(), kNoFile + "; " + kNoFile);
  test::write_tree(files.rule_file(), "device_004", "filter_node_list=f");
  devices.resize(2);
  EXPECT_TRUE(devcfg_get_filter_rules_list(devices) == -1 && devices.empty());
  EXPECT_EQ(log_line(), "export tree of /etc/config/kfilter.xml fail");
  EXPECT_EQ(devcfg_get_filter_rule(id, device), 0) << "an unknown device";
  EXPECT_STREQ(device.device_id, "as it was");
  test::take_log();
  for (const auto& [values, records, log] : kRows) {
    test::write_tree(files.rule_file(), "filter", values);
    devices.resize(3);
    EXPECT_EQ(devcfg_get_filter_rules_list(devices), 0);
    EXPECT_EQ(summary(devices), records);
    EXPECT_EQ(log_line(), log);
    devcfg_free_filter_rules_list(devices);
    EXPECT_TRUE(devices.empty() && log_line() == "devcfg_free_filter_rules_list() free list");
  }
}

TEST(RuleFile, TextsRoundTripAndAreCutToTheirFields) {
  const test::ConfigFiles files;
  for (const std::string& text : {{" "}, {"\r\n"}, {"<&>\"'"}, std::string(5000, 'y')}) {
    std::string values = "device_node_list=d;d/filter_node_list=f;d/f/rule_node_list=r";
    for (const char* path : {"device_id", "f/name", "f/r/name", "f/r/target", "f/r/result"}) {
      values.append(";d/").append(path).append("=").append(text);
    }
    test::write_tree(files.rule_file(), "filter", values);
    std::vector<dev_filter> devices;
    ASSERT_EQ(devcfg_get_filter_rules_list(devices), 0);
    const filter& read = devices.at(0).filter_list.at(0);
    EXPECT_EQ(devices[0].device_id, text.substr(0, kFilterDeviceIdBytes - 1));
    EXPECT_EQ(read.name, text.substr(0, kFilterNameBytes - 1));
    rule expected{"", -1, 0, "", ""};
    text.copy(expected.name, kRuleNameBytes - 1);
    text.copy(expected.target, kRuleTextBytes - 1);
    text.copy(expected.result, kRuleTextBytes - 1);
    EXPECT_EQ(std::memcmp(&read.rule_list.at(0), &expected, sizeof(rule)), 0);
  }
}
