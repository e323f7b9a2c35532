// The filters of a vault, and the commands that show what the library does with texts.
#include "textfilter/rule_list.h"

#include "tests/support/captured_log.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"
#include "tests/support/vault_calls.h"

namespace {

using Log = std::vector<std::string>;

const std::string kLongText(kRuleTextBytes, 'L');

void store(std::string vault_id, const std::string& filters) {
  ASSERT_EQ(devcfg_modify_filter(vault_id.data(), test::Json(filters)), 0);
}

// The vault "whole" has filters, the one without a type in "broken" is the second of three.
class RuleList : public testing::Test {
 protected:
  void SetUp() override {
    store("whole", R"([{"type":2,"target":"a","result":"b","name":"first"},{"type":0,"target":")" +
                       kLongText + R"(","result":")" + kLongText + R"("}])");
    store("broken", R"([{"type":1,"target":"a","result":"b"},{"type":-1,"target":"c","result":"d"},
                        {"type":1,"target":"e","result":"f"}])");
    test::take_log();
  }

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
}

TEST_F(RuleList, StopsWhereThereIsNothingToReadAndFiltersByTheRest) {
  // The vault, the text, the filters' result, how often they are applied.
  std::tuple<std::string, const char*, int, std::vector<std::size_t>> rows[] = {
      {"whole", "b b cbt", 0, {3, 0}},
      {"broken", "b b cbt", kDevcfgRuleTypeMissing, {3}},
      {"unknown", "a a cat", 0, {}},
      {"", "a a cat", -1, {}}};
  for (auto& [vault_id, filtered, rules_result, replacements] : rows) {
    char text[] = "a a cat";
    FilterReport report;
    test::take_log();
    EXPECT_EQ(ft_filter_string_bounded(vault_id.data(), text, sizeof(text), report),
              kFilterFinished);
    EXPECT_STREQ(text, filtered);
    EXPECT_EQ(report.rules_result, rules_result) << vault_id;
    EXPECT_EQ(report.replacements, replacements) << vault_id;
    EXPECT_EQ(test::take_log(),
              Log(vault_id == "broken", "[libzelip](get_rule_list:N) Get rule type failed"));
    char again[] = "a a cat";
    EXPECT_EQ(ft_filter_string(vault_id.data(), again), kDevcfgFiltered);
    EXPECT_STREQ(again, filtered);
  }
  char text[] = "a";
  EXPECT_EQ(ft_filter_string(nullptr, text), kDevcfgFiltered);
  EXPECT_STREQ(text, "a");
}

TEST_F(RuleList, Commands) {
  store("v", R"([{"type":0,"target":"cat","result":"dog"},{"type":0,"target":"x","result":"xx"}])");
  const std::string large(5'000'000, '.');
  // Arguments, input, exit status, output, a part of the errors.
  const std::tuple<Log, std::string, int, std::string, std::string> kRows[] = {
      {{"filter-text", "v"}, "a cat\ncat\n\nx", 0, "a dog\ndog\n\nxx", ""},
      {{"filter-text", "v", "--whole"}, "x\nx", 0, std::string(1000, 'x') + "\nx", "999 passes"},
      {{"filter-text", "v", "--whole"}, large + "cat", 0, large + "dog", ""},
      {{"filter-text", "v", "--hits"}, "cat cat\ncat", 0, "dog dog\ndog", "3  \"cat\" -> \"dog\""},
      {{"filter-text", "v"}, std::string("cat\na\0b", 7), 1, "dog\n", "text 2 holds a NUL"},
      {{"filter-text", "broken"}, "ac\n", 1, "bc\n", "only the first 1 filters"},
      {{"filter-text", "none"}, "cat", 1, "", "no data source \"none\""},
      {{"filter-text", ""}, "cat", 1, "", "the ID is empty"},
      {{"search", "like", "it's+a \"b c\""}, "", 0, "it''s%%a\nb c\n", ""},
      {{"search", "like", "--json", "a b"}, "", 0, "[\n  \"a\",\n  \"b\"\n]\n", ""},
      {{"search", "regex", "a.b + c"}, "", 0, "a\\.b|c\n", ""},
      {{"metadata", "remove", "m"}, "", 1, "", "\"m\" was not removed"},
  };
  for (const auto& [arguments, input, exit_status, output, errors] : kRows) {
    const test::Outcome outcome = test::run(ORVANEIP_DEVCFG, arguments, input);
    EXPECT_EQ(outcome.exit_status, exit_status) << outcome.errors;
    EXPECT_TRUE(outcome.output == output) << outcome.output.substr(0, 200);
    EXPECT_NE(outcome.errors.find(errors), std::string::npos) << outcome.errors;
    EXPECT_EQ(outcome.errors.empty(), errors.empty()) << outcome.errors;
  }
  test::write_file(vault_.database(), "no database, but a text that is long enough for one");
  const test::Outcome outcome = test::run(ORVANEIP_DEVCFG, {"filter-text", "v"}, "cat");
  EXPECT_EQ(std::to_string(outcome.exit_status) + outcome.output, "1");
  EXPECT_NE(outcome.errors.find("the vault database cannot be read"), std::string::npos);
}
