#include "textfilter/rule_list.h"

#include <gtest/gtest.h>
#include <json-c/json.h>

#include <string>
#include <vector>

#include "orvaneip.h"
#include "tests/support/captured_log.h"
#include "tests/support/temp_folder.h"

namespace {

using Log = std::vector<std::string>;

const std::string kLongText(kRuleTextBytes, 'L');

class RuleList : public testing::Test {
 protected:
  // The vault "whole" has filters, the one without a type in "broken" is the second of three.
  void SetUp() override {
    store("whole", R"([{"type":2,"target":"a","result":"b","name":"first"},
                       {"type":0,"target":")" +
                       kLongText + R"(","result":")" + kLongText + R"("}])");
    store("broken", R"([{"type":1,"target":"a","result":"b"},{"type":-1,"target":"c","result":"d"},
                        {"type":1,"target":"e","result":"f"}])");
    test::take_log();
  }

  static void store(std::string vault_id, const std::string& filters) {
    json_object* list = json_tokener_parse(filters.c_str());
    ASSERT_EQ(devcfg_modify_filter(vault_id.data(), list), 0);
    json_object_put(list);
  }

 private:
  test::TempVault vault_;
};

}  // namespace

TEST_F(RuleList, AppendsTheFiltersOfAVault) {
  std::vector<rule> rules(1);
  std::string vault_id = "whole";
  ASSERT_EQ(get_rule_list(vault_id.data(), rules), 0);
  ASSERT_EQ(rules.size(), 3U);
  EXPECT_EQ(rules[1].type, 2);
  EXPECT_STREQ(rules[1].target, "a");
  EXPECT_STREQ(rules[1].result, "b");
  EXPECT_STREQ(rules[1].name, "");
  EXPECT_EQ(rules[1].enable, 0);
  EXPECT_EQ(rules[2].target, kLongText.substr(1));
  EXPECT_EQ(rules[2].result, kLongText.substr(1));
  EXPECT_EQ(test::take_log(), Log{});
}

TEST_F(RuleList, StopsWhereThereIsNothingToRead) {
  std::vector<rule> rules(1);
  std::string empty;
  std::string unknown = "unknown";
  std::string broken = "broken";
  EXPECT_EQ(get_rule_list(nullptr, rules), -1);
  EXPECT_EQ(get_rule_list(empty.data(), rules), -1);
  EXPECT_EQ(get_rule_list(unknown.data(), rules), 0);
  EXPECT_EQ(rules.size(), 1U);
  EXPECT_EQ(get_rule_list(broken.data(), rules), kDevcfgRuleTypeMissing);
  EXPECT_EQ(rules.size(), 2U);
  EXPECT_EQ(test::take_log(), Log{"[libzelip](get_rule_list:N) Get rule type failed"});
}

TEST_F(RuleList, FiltersATextByAVault) {
  struct Row {
    std::string vault_id;
    const char* filtered;
    int rules_result;
    std::vector<std::size_t> replacements;
  };
  const Row kRows[] = {{"whole", "b b cbt", 0, {3, 0}},
                       {"broken", "b b cbt", kDevcfgRuleTypeMissing, {3}},
                       {"unknown", "a a cat", 0, {}},
                       {"", "a a cat", -1, {}}};
  for (Row row : kRows) {
    char text[] = "a a cat";
    FilterReport report;
    EXPECT_EQ(ft_filter_string_bounded(row.vault_id.data(), text, sizeof(text), report),
              kFilterFinished);
    EXPECT_STREQ(text, row.filtered);
    EXPECT_EQ(report.rules_result, row.rules_result) << row.vault_id;
    EXPECT_EQ(report.replacements, row.replacements) << row.vault_id;
    char again[] = "a a cat";
    EXPECT_EQ(ft_filter_string(row.vault_id.data(), again), kDevcfgFiltered);
    EXPECT_STREQ(again, row.filtered);
  }
  char text[] = "a";
  EXPECT_EQ(ft_filter_string(nullptr, text), kDevcfgFiltered);
  EXPECT_STREQ(text, "a");
}
