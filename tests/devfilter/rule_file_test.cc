#include <gtest/gtest.h>

#include <cstring>
#include <regex>
#include <tuple>

#include "orvaneip.h"
#include "tests/support/captured_log.h"
#include "tests/support/config_files.h"

namespace {

// The records in short: "DEVICE(FILTER:ENABLE[RULE:TYPE:ENABLE ...] ...)".
std::string shown(const std::vector<dev_filter>& devices) {
  std::ostringstream text;
  for (const dev_filter& device : devices) {
    text << device.device_id << "(";
    for (const filter& entry : device.filter_list) {
      text << entry.name << ":" << entry.enable << "[";
      for (const rule& line : entry.rule_list) {
        text << line.name << ":" << line.type << ":" << line.enable << " ";
      }
      text << "]";
    }
    text << ")";
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

TEST(RuleFile, Table) {
  const std::tuple<std::string, std::string, std::string> kRows[] = {
      {"device_node_list=", "", "There is no rules in /etc/config/kfilter.xml"},
      // Devices without filters are left out.
      {"device_node_list=d,e;d/device_id=D;e/filter_node_list=,,", "", ""},
      // Absent values, a filter without rules, order and repetition.
      {"device_node_list=,e,,d,d,;d/device_id=D;d/filter_node_list=f;e/filter_node_list=g,f;"
       "e/f/name=F;e/f/enable=-3;e/f/rule_node_list=r,,s,r,;e/f/r/name=R;e/f/r/type=2;"
       "e/f/r/enable=1;e/f/s/enable=9",
       "(:0[]F:-3[R:2:1 :-1:9 R:2:1 ])D(:0[])D(:0[])",
       "DevNode=[e] Has 2 filters; DevNode=[d] Has 1 filters; DevNode=[d] Has 1 filters"},
      // Cut before the last f.
      {"device_node_list=d;d/filter_node_list=f," + std::string(506, 'g') + ",f,f;d/f/name=F",
       "(F:0[]:0[]F:0[])", "DevNode=[d] Has 3 filters"}};
  const test::ConfigFiles files;
  for (const auto& [values, records, log] : kRows) {
    test::write_tree(files.rule_file(), "filter", values);
    std::vector<dev_filter> devices(3);
    test::take_log();
    EXPECT_EQ(devcfg_get_filter_rules_list(devices), 0);
    EXPECT_EQ(shown(devices), records);
    EXPECT_EQ(log_line(), log);
    devcfg_free_filter_rules_list(devices);
    EXPECT_TRUE(devices.empty());
    EXPECT_EQ(log_line(), "devcfg_free_filter_rules_list() free list");
  }
}

TEST(RuleFile, TextsRoundTripAndAreCutToTheirFields) {
  const test::ConfigFiles files;
  const std::string too_long(5000, 'y');
  for (const std::string text : {" ", "\r\n", "<&>\"'", too_long.c_str()}) {
    test::write_tree(files.rule_file(), "filter",
                     "device_node_list=d;d/filter_node_list=f;d/f/rule_node_list=r;d/device_id=" +
                         text + ";d/f/name=" + text + ";d/f/r/name=" + text +
                         ";d/f/r/target=" + text + ";d/f/r/result=" + text);
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

TEST(RuleFile, TheStepsAppend) {
  const test::ConfigFiles files;
  test::write_tree(files.rule_file(), "filter",
                   "d/filter_node_list=a, b;d/a/rule_node_list=r,s;d/b/name=not this one");
  void** tree = xmlcfg_export_xmltree(test::Tree(files.rule_file()).handle, "filter", nullptr);
  char device[] = "d";
  char name[] = "a";
  std::vector<filter> filters(1);
  std::vector<rule> rules(1);
  EXPECT_EQ(get_filter_rule(tree, device, filters), 2);
  EXPECT_STREQ(filters.at(2).name, "") << "the blank belongs to the node's name";
  EXPECT_EQ(get_rule_list(tree, device, name, rules), 0);
  EXPECT_EQ(rules.size(), 3U);
  xmltree_destroy(tree);
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
  EXPECT_EQ(devcfg_get_filter_rules_list(devices), -1);
  EXPECT_TRUE(devices.empty());
  EXPECT_EQ(log_line(), "export tree of /etc/config/kfilter.xml fail");

  EXPECT_EQ(devcfg_get_filter_rule(id, device), 0) << "an unknown device";
  EXPECT_STREQ(device.device_id, "as it was");
}
