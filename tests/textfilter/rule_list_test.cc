// The filters and the metadata of a vault.
#include "textfilter/rule_list.h"

#include <cstring>

#include "platform/vault_status.h"
#include "tests/support/bare_sqlite.h"
#include "tests/support/vault_calls.h"
#include "vault/metadata_remove.h"

namespace {

using Log = std::vector<std::string>;

const std::string kLongText(kRuleTextBytes, 'L');

void store(std::string vault_id, const std::string& filters) {
  ASSERT_EQ(devcfg_modify_filter(vault_id.data(), test::Json(filters)), 0);
}

// The vault "whole" has filters; in "broken" the second of three has no type.
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

TEST_F(RuleList, EndsAtAFilterWithoutATypeAndTheOthersAreApplied) {
  // The vault, the filtered text, the result of reading, the replacements.
  std::tuple<std::string, std::string, int, std::vector<std::size_t>> rows[] = {
      {"whole", "b b cbt", 0, {3, 0}},
      {"broken", "b b cbt", kDevcfgRuleTypeMissing, {3}},
      {"unknown", "a a cat", 0, {}},
      {"", "a a cat", -1, {}},
  };
  for (auto& [vault_id, filtered, rules_result, replacements] : rows) {
    char text[] = "a a cat", again[] = "a a cat";
    FilterReport report;
    test::take_log();
    EXPECT_EQ(ft_filter_string_bounded(vault_id.data(), text, 8, report), kFilterFinished);
    EXPECT_EQ(test::take_log(),
              Log(vault_id == "broken", "[libzelip](get_rule_list:N) Get rule type failed"));
    EXPECT_EQ(report.rules_result, rules_result) << vault_id;
    EXPECT_EQ(report.replacements, replacements) << vault_id;
    char* const id = vault_id.empty() ? nullptr : vault_id.data();
    EXPECT_EQ(ft_filter_string(id, again), kDevcfgFiltered);
    EXPECT_TRUE(text == filtered && again == filtered) << text << again;
  }
}

TEST(MetadataRemove, FillsBothBuffersWhateverHappens) {
  const test::TempVault vault;
  char key[] = "m1";
  ASSERT_EQ(test::add("v"), 0);  // creates the database
  const test::BareSqlite database(vault.database());
  ASSERT_EQ(database.exec("INSERT INTO metadata VALUES (1, 'm1', 'v', '')"), 0);
  const std::string failed = "[libzelip](metadata_remove:N) Remove data failed: ";
  const std::pair<char*, std::string> kCalls[] = {
      {key, ""},  // it exists once
      {key, failed + std::to_string(metadata_vault::kVaultNotFound)},
      {nullptr, failed + "-1"}};
  for (const auto& [metadata_id, expected] : kCalls) {
    test::take_log();
    std::string vault_id(257, '#'), data_type(129, '#');
    EXPECT_EQ(metadata_remove(metadata_id, nullptr, vault_id.data(), data_type.data()), 0);
    EXPECT_EQ(vault_id, padded("IDZELPROBUILDINVAULTBOOKMARKSERVICE", 256));
    EXPECT_EQ(data_type, padded("BOOKMARK", 128));
    const Log log = test::take_product_log();
    EXPECT_EQ(log.empty() ? "" : log.back(), expected);
  }
}
