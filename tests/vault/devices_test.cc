#include <regex>

#include "tests/support/run_sql.h"
#include "tests/support/vault_calls.h"

using test::add;

TEST(AddDevice, TakesTheFirstFreeIndex) {
  for (const auto& [indexes, index] : std::vector<std::pair<std::vector<int>, int>>{
           {{}, 0}, {{0, 1, 3}, 2}, {{1, 2}, 0}, {{2, 0, 1}, 3}, {{2147483647}, 0}}) {
    const test::TempVault vault;
    for (const int stored : indexes) {
      test::OpenVault()->insert_data_source(test::data_source(std::to_string(stored), stored));
    }
    EXPECT_EQ(add("new"), 0);
    EXPECT_EQ(test::stored("new").at(0).index, index);
  }
}

TEST(AddDevice, FillsAnEmptyIdentifierAndTreatsNullAsEmpty) {
  const test::TempVault vault;
  test::Buffer id(kDeviceIdBytes);
  *id.data() = '\0';
  int code = 77;
  EXPECT_EQ(devcfg_add_device(id.data(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                              nullptr, 0, true, false, &code),
            id.data());
  EXPECT_TRUE(code == 77 && id.guard_untouched());
  EXPECT_TRUE(std::regex_match(id.data(), std::regex("ID[0-9A-F]{32}"))) << id.data();
  const auto record = test::stored(id.data()).at(0);
  EXPECT_EQ(record.type + record.vault_name + record.description, "");
  EXPECT_FALSE(record.enable);
}

TEST(AddDevice, StringsOfAnyBytesReachEveryCallWhole) {
  const test::TempVault vault;
  for (std::string text : {std::string("it's \"quoted\"; DROP TABLE data_source; -- 100%s%n%d %"),
                           std::string("攝影機 ünïcode / \\"), std::string(10'000, 'x'),
                           std::string("\xFF\xFE\x01 broken"), std::string(" line\nfeed\ttab ")}) {
    EXPECT_EQ(add(text, text), 0);
    int matches[] = {0, 0};
    EXPECT_EQ(devcfg_check_vault_exist(text.data(), &matches[0]), 0);
    EXPECT_EQ(devcfg_check_vault_name(text.data(), &matches[1]), 0);
    EXPECT_EQ(matches[0] + matches[1], 2);
    test::Buffer name(kVaultNameBytes);
    EXPECT_EQ(devcfg_remove_device(text.data(), name.data(), nullptr), 0);
    EXPECT_EQ(name.data(), text.substr(0, kVaultNameBytes - 1));
    EXPECT_TRUE(name.guard_untouched() && test::stored().empty());
  }
}

// Two data sources: "a", which is changed, and "b", whose name is B.
TEST(ModifyDevice, MakesTheGivenEditsAndReturnsTheOldValues) {
  const test::TempVault vault;
  test::Buffer name(kVaultNameBytes), description(kDescriptionBytes);
  std::vector<int> indexes;
  add("a", "A");
  add("b", "B");
  const std::string before = test::show();
  for (const char* unknown : {static_cast<const char*>(nullptr), "", "A"}) {
    char* id = const_cast<char*>(unknown);
    EXPECT_EQ(
        devcfg_modify_device(id, nullptr, test::Json("\"x\""), nullptr, nullptr, nullptr, nullptr,
                             nullptr, nullptr, name.data(), description.data(), indexes),
        id != nullptr && *id != '\0' ? kDevcfgFailed : kDevcfgVaultIdMissing);
    EXPECT_EQ(devcfg_remove_device(id, name.data(), description.data()), 0);
  }
  EXPECT_TRUE(name.untouched() && description.untouched());
  EXPECT_EQ(test::show(), before);

  const std::string first = R"([{"guid":"g","channel_index":7,"name":"n"}])";
  const std::string two =
      R"([{"guid":"x","channel_index":4,"name":"d"},{"guid":"y","channel_index":1,"name":"c"}])";
  const std::string n(100, 'n'), d(1000, 'd');
  const std::tuple<test::Edits, int, std::string> kRows[] = {
      // the edits, the result, and "name|description|enable|channels" after them
      {{"\"A\"", "\"old\"", "true", first}, 0, "A|old|1|7n"},
      {{"\"B\"", "\"d\"", "false", "[]"}, kDevcfgNameTaken, "A|old|1|7n"},
      {{"", "", "", ""}, 0, "A|old|1|7n"},
      {{"\"\"", "\"d\"", "", ""}, 0, "A|old|1|7n"},
      {{"", "\"d\"", "false", ""}, 0, "A|old|0|7n"},
      {{"", "", "", two}, 0, "A|old|0|1c4d"},
      {{"", "", "true", first}, 0, "A|old|1|7n"},
      {{"\"new\"", "\"text\"", "false", two}, 0, "new|text|0|1c4d"},
      {{"\"a\"", "", "", "[7]"}, metadata_vault::kChannelNotObject, "a||0|1c4d"},
      {{"\"a\"", "", "\"\"", "{}"}, metadata_vault::kChannelListNotArray, "a||0|1c4d"},
      {{"42", "[1]", "\"false\"", ""}, 0, "42|[ 1 ]|1|1c4d"},
      {{"\"50%s\\u0000cut\"", "\"it's\"", "0", ""}, 0, "50%s|it's|0|1c4d"},
      {{"\"50%s\"", "true", "2", "[]"}, 0, "50%s|true|1|"},
      {{'"' + n + '"', '"' + d + '"', "", ""}, 0, n + "|" + d + "|1|"},
      {{"\"B\"", "", "", ""}, kDevcfgNameTaken, n + "|" + d + "|1|"},
  };
  std::string old = "A|old";
  for (const auto& [edits, result, after] : kRows) {
    EXPECT_EQ(test::modify("a", edits, indexes, name.data(), description.data()), result) << after;
    EXPECT_EQ(test::run_sql(vault.database(),
                            "SELECT vault_name || '|' || description || '|' || enable || '|' ||"
                            "(SELECT coalesce(group_concat(channel_index || name, ''), '') FROM "
                            "(SELECT * FROM channel WHERE vault_id = 'a' ORDER BY channel_index))"
                            "FROM data_source WHERE vault_id = 'a' AND type = 'old' AND "
                            "list_index = 0"),
              after);
    EXPECT_EQ(std::string(name.data()) + "|" + description.data(), old);
    const auto fields = split(after, '|');
    old =
        fields[0].substr(0, kVaultNameBytes - 1) + "|" + fields[1].substr(0, kDescriptionBytes - 1);
  }
  EXPECT_EQ(indexes, (std::vector{7, 4, 1, 7, 4, 1}));
  EXPECT_EQ(test::stored("b").at(0).vault_name, "B");
  EXPECT_TRUE(name.guard_untouched() && description.guard_untouched());
}
