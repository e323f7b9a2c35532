// The filters of a vault, the commands that show what the library does with texts, and metadata.
#include "textfilter/rule_list.h"

#include <cstring>

#include "platform/vault_status.h"
#include "tests/support/bare_sqlite.h"
#include "tests/support/process.h"
#include "tests/support/vault_calls.h"
#include "textfilter/metadata_remove.h"

namespace {

using Log = std::vector<std::string>;

const std::string kLongText(kRuleTextBytes, 'L');

void store(std::string vault_id, const std::string& filters) {
  ASSERT_EQ(devcfg_modify_filter(vault_id.data(), test::Json(filters)), 0);
}

// The vault "whole" has filters, the one without a type in "broken" is the second of three.
struct RuleList : testing::Test {
  RuleList() {
    store("whole", R"([{"type":2,"target":"a","result":"b","name":"first"},{"type":0,"target":")" +
                       kLongText + R"(","result":")" + kLongText + R"("}])");
    store("broken", R"([{"type":1,"target":"a","result":"b"},{"type":-1,"target":"c","result":"d"},
                        {"type":1,"target":"e","result":"f"}])");
    test::take_log();
  }
  test::TempVault vault_;
};

std::string padded(std::string text, std::size_t size) { return (text.resize(size), text + '#'); }

}  // namespace

TEST_F(RuleList, AppendsTheFiltersOfAVault) {
  std::vector<rule> rules(1);
  std::string vault_id = "whole";
  ASSERT_EQ(get_rule_list(vault_id.data(), rules), 0);
  ASSERT_EQ(rules.size(), 3U);
  const rule expected = {"", 2, 0, "a", "b"};
  EXPECT_EQ(std::memcmp(&rules[1], &expected, sizeof(rule)), 0);
  EXPECT_TRUE(rules[2].target == kLongText.substr(1) && rules[2].result == kLongText.substr(1));
}

TEST_F(RuleList, StopsWhereThereIsNothingToReadAndFiltersByTheRest) {
  // The vault, the text, the filters' result, how often they are applied.
  std::tuple<std::string, const char*, int, std::vector<std::size_t>> rows[] = {
      {"whole", "b b cbt", 0, {3, 0}},
      {"broken", "b b cbt", kDevcfgRuleTypeMissing, {3}},
      {"unknown", "a a cat", 0, {}},
      {"", "a a cat", -1, {}},
  };
  for (auto& [vault_id, filtered, rules_result, replacements] : rows) {
    char text[] = "a a cat";
    FilterReport report;
    test::take_log();
    EXPECT_EQ(ft_filter_string_bounded(vault_id.data(), text, 8, report), kFilterFinished);
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
  // Arguments, input, exit status, output, a part of the errors.
  const std::tuple<Log, std::string, int, std::string, std::string> kRows[] = {
      {{"filter-text", "v"}, "a cat\ncat\n\nx", 0, "a dog\ndog\n\nxx", ""},
      {{"filter-text", "v", "--whole"}, "x\nx", 0, std::string(1000, 'x') + "\nx", "999 passes"},
      {{"filter-text", "v", "--hits"}, "cat cat\ncat", 0, "dog dog\ndog", "3  \"cat\" -> \"dog\""},
      {{"filter-text", "v"}, std::string("cat\na\0b", 7), 1, "dog\n", "text 2 holds a NUL"},
      {{"filter-text", "broken"}, "ac\n", 1, "bc\n", "only the first 1 filters"},
      {{"filter-text", "none"}, "cat", 1, "", "no data source \"none\""},
      {{"filter-text", ""}, "cat", 1, "", "the ID is empty"},
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

TEST(MetadataRemove, FillsBothBuffersWhateverHappens) {
  const test::TempVault vault;
  char key[] = "m1";
  metadata_remove(key, nullptr, nullptr, nullptr);  // creates the database
  const test::BareSqlite database(vault.database());
  ASSERT_EQ(database.exec("INSERT INTO metadata VALUES (1, 'm1', 'v', '')"), 0);
  const std::string failed = "[libzelip](metadata_remove:N) Remove data failed: ";
  const std::pair<char*, std::vector<std::string>> kCalls[] = {
      {key, {}},  // it is there once
      {key, {failed + std::to_string(metadata_vault::kVaultNotFound)}},
      {nullptr, {failed + "-1"}},
  };
  for (const auto& [metadata_id, expected] : kCalls) {
    test::take_log();
    std::string vault_id(kRemovedVaultIdBytes + 1, '#');
    std::string data_type(kRemovedDataTypeBytes + 1, '#');
    EXPECT_EQ(metadata_remove(metadata_id, nullptr, vault_id.data(), data_type.data()), 0);
    EXPECT_EQ(vault_id, padded("IDZELPROBUILDINVAULTBOOKMARKSERVICE", 256));
    EXPECT_EQ(data_type, padded("BOOKMARK", 128));
    auto log = test::take_product_log();
    std::erase_if(log, [](const std::string& line) { return line.starts_with("[vaultdb]"); });
    EXPECT_EQ(log, expected);
  }
}
