#include <regex>

#include "tests/platform/run_sql.h"
#include "tests/support/vault_calls.h"

using test::add;

TEST(AddDevice, TakesTheFirstFreeIndex) {
  for (const auto& [indexes, index] : std::vector<std::pair<std::vector<int>, int>>{
           {{}, 0}, {{0, 1, 3}, 2}, {{1, 2}, 0}, {{2, 0, 1}, 3}, {{2147483647}, 0}}) {
    const test::TempVault folder;
    for (const int stored : indexes) {
      test::OpenVault()->insert_data_source(test::data_source(std::to_string(stored), stored));
    }
    EXPECT_EQ(add("new"), 0);
    EXPECT_EQ(test::stored("new").at(0).index, index);
  }
}

TEST(AddDevice, FillsAnEmptyIdentifierAndReadsNullAsEmpty) {
  const test::TempVault folder;
  test::Buffer id(kDeviceIdBytes);
  *id.data() = '\0';
  int code = 77;
  const auto add_nulls = [&code](char* vault_id) {
    return devcfg_add_device(vault_id, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr, 0, true, false, &code);
  };
  EXPECT_EQ(add_nulls(id.data()), id.data());
  EXPECT_EQ(code, 77);
  EXPECT_TRUE(id.guard_untouched());
  EXPECT_TRUE(std::regex_match(id.data(), std::regex("ID[0-9A-F]{32}"))) << id.data();
  const auto record = test::stored(id.data()).at(0);
  EXPECT_EQ(record.type + record.vault_name + record.description, "");
  EXPECT_FALSE(record.enable);
  EXPECT_EQ(add_nulls(nullptr), nullptr);
  EXPECT_EQ(code, kDevcfgVaultIdMissing);
}

TEST(AddDevice, TextsOfAnyKindReachEveryCallWhole) {
  const test::TempVault folder;
  for (std::string text : {std::string("it's \"quoted\"; DROP TABLE data_source; -- 100%s%n%d %"),
                           std::string("攝影機 ünïcode / \\"), std::string(10'000, 'x'),
                           std::string("\xFF\xFE\x01 broken"), std::string(" line\nfeed\ttab ")}) {
    const std::shared_ptr<json_object> json(json_object_new_string(text.c_str()), json_object_put);
    const std::string quoted =
        json_object_to_json_string_ext(json.get(), JSON_C_TO_STRING_NOSLASHESCAPE);
    const std::string filters =
        R"([{"type":0,"target":)" + quoted + R"(,"result":"%s","name":""}])";
    EXPECT_EQ(add(text, text, R"([{"channel_index":0,"guid":)" + quoted + R"(,"name":""}])"), 0);
    EXPECT_EQ(notify_camera_modified(text.data(), text.data(), 0), 0);
    EXPECT_EQ(devcfg_modify_filter(text.data(), test::Json(filters)), 0);
    int matches[] = {0, 0};
    EXPECT_EQ(devcfg_check_vault_exist(text.data(), &matches[0]), 0);
    EXPECT_EQ(devcfg_check_vault_name(text.data(), &matches[1]), 0);
    EXPECT_EQ(matches[0] + matches[1], 2);
    EXPECT_EQ(test::show(text),
              R"({"vault_list":[{"vault_id":)" + quoted + ",\"vault_name\":" + quoted +
                  R"(,"description":"old","type":"old","index":0,)"
                  R"("enable":true,"status":{"last_recv_time_str":""},"filter":)" +
                  filters + R"(,"channel_guid_list":[{"channel_index":0,"guid":)" + quoted +
                  ",\"name\":" + quoted + "}]}]}");
    test::Buffer name(kVaultNameBytes);
    EXPECT_EQ(devcfg_remove_device(text.data(), name.data(), nullptr), 0);
    EXPECT_EQ(name.data(), text.substr(0, 64));
    EXPECT_TRUE(name.guard_untouched() && test::stored().empty());
  }
}

namespace {

using test::Edits;

// Two data sources: "a", which the test changes, and "b", named B.
class ModifyDevice : public testing::Test {
 protected:
  ModifyDevice() {
    test::add("a", "A");
    test::add("b", "B");
  }

  // "name|description|enable|channels" of "a"; nothing else may change.
  std::string state() const {
    return test::run_sql(
        folder_.database(),
        "SELECT vault_name || '|' || description || '|' || enable || '|' || (SELECT "
        "coalesce(group_concat(channel_index || name, ''), '') FROM (SELECT * FROM channel"
        " WHERE vault_id = 'a' ORDER BY channel_index))"
        " FROM data_source WHERE vault_id = 'a' AND type = 'old' AND list_index = 0");
  }

  int modify(const Edits& edits) {
    return test::modify("a", edits, indexes_, name_.data(), description_.data());
  }

  const test::TempVault folder_;
  test::Buffer name_{kVaultNameBytes};
  test::Buffer description_{kDescriptionBytes};
  std::vector<int> indexes_;
};

}  // namespace

TEST_F(ModifyDevice, ReadsArgumentsAsJsonMakesThoseEditsGivesTheOldTextsAndRefuses) {
  const std::string kFirst = R"([{"guid":"g","channel_index":7,"name":"n"}])";
  const std::string kTwo =
      R"([{"guid":"x","channel_index":4,"name":"d"},{"guid":"y","channel_index":1,"name":"c"}])";
  const std::tuple<Edits, int, std::string> kRows[] = {
      {{"\"A\"", "\"old\"", "true", kFirst}, 0, "A|old|1|7n"},
      {{"\"B\"", "\"d\"", "false", "[]"}, kDevcfgNameTaken, "A|old|1|7n"},
      {{"", "", "", ""}, 0, "A|old|1|7n"},
      {{"\"\"", "\"d\"", "", ""}, 0, "A|old|1|7n"},
      {{"", "\"d\"", "false", ""}, 0, "A|old|0|7n"},
      {{"", "", "", kTwo}, 0, "A|old|0|1c4d"},
      {{"", "", "true", kFirst}, 0, "A|old|1|7n"},
      {{"\"new\"", "\"text\"", "false", kTwo}, 0, "new|text|0|1c4d"},
      {{"\"a\"", "", "", "[7]"}, metadata_vault::kChannelNotObject, "a||0|1c4d"},
      {{"\"a\"", "", "\"\"", "{}"}, metadata_vault::kChannelListNotArray, "a||0|1c4d"},
      {{"42", "[1]", "\"false\"", ""}, 0, "42|[ 1 ]|1|1c4d"},
      {{"\"50%s\\u0000cut\"", "\"it's\"", "0", ""}, 0, "50%s|it's|0|1c4d"},
      {{"\"50%s\"", "true", "2", "[]"}, 0, "50%s|true|1|"},
  };
  std::string old = "A|old";
  for (const auto& [edits, result, after] : kRows) {
    EXPECT_EQ(modify(edits), result) << after;
    EXPECT_EQ(state(), after);
    EXPECT_EQ(std::string(name_.data()) + "|" + description_.data(), old);
    old = after.substr(0, after.find('|', after.find('|') + 1));
  }
  EXPECT_EQ(indexes_, (std::vector{7, 4, 1, 7, 4, 1}));
  EXPECT_EQ(test::stored("b").at(0).vault_name, "B");
}

TEST_F(ModifyDevice, CutsTheOldTextsAndLeavesTheBuffersOfAnUnknownDataSource) {
  const std::string before = test::show();
  for (const char* unknown : {static_cast<const char*>(nullptr), "", "A"}) {
    char* id = const_cast<char*>(unknown);
    EXPECT_EQ(
        devcfg_modify_device(id, nullptr, test::Json("\"x\""), nullptr, nullptr, nullptr, nullptr,
                             nullptr, nullptr, name_.data(), description_.data(), indexes_),
        id != nullptr && *id != '\0' ? kDevcfgFailed : kDevcfgVaultIdMissing);
    EXPECT_EQ(devcfg_remove_device(id, name_.data(), description_.data()), 0);
  }
  EXPECT_TRUE(name_.untouched() && description_.untouched());
  EXPECT_EQ(test::show(), before);
  modify({'"' + std::string(100, 'n') + '"', '"' + std::string(1000, 'd') + '"', "", ""});
  EXPECT_EQ(modify({"\"B\"", "", "", ""}), kDevcfgNameTaken);
  EXPECT_EQ(name_.data(), std::string(64, 'n'));
  EXPECT_EQ(description_.data(), std::string(512, 'd'));
  EXPECT_TRUE(name_.guard_untouched() && description_.guard_untouched());
}
