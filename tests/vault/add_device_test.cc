#include <gtest/gtest.h>

#include <regex>

#include "tests/support/temp_folder.h"
#include "tests/support/vault_calls.h"

using test::add;

TEST(AddDevice, TakesTheFirstFreeIndex) {
  const std::pair<std::vector<int>, int> kRows[] = {
      {{}, 0}, {{0, 1, 3}, 2}, {{1, 2}, 0}, {{2, 0, 1}, 3}, {{2147483647}, 0}};
  for (const auto& [indexes, index] : kRows) {
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
  const auto add_nulls = [](char* vault_id, int* reason) {
    return devcfg_add_device(vault_id, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr, 0, true, false, reason);
  };
  EXPECT_EQ(add_nulls(id.data(), &code), id.data());
  EXPECT_EQ(code, 77);
  EXPECT_TRUE(id.guard_untouched());
  EXPECT_TRUE(std::regex_match(id.data(), std::regex("ID[0-9A-F]{32}"))) << id.data();
  const auto record = test::stored(id.data()).at(0);
  EXPECT_EQ(record.type + record.vault_name + record.description, "");
  EXPECT_FALSE(record.enable);
  EXPECT_EQ(add_nulls(nullptr, nullptr), nullptr);
}

TEST(AddDevice, HoldsAtMost128AndRefusesInAFixedOrder) {
  const test::TempVault folder;
  for (int i = 0; i < 127; ++i) {
    test::OpenVault()->insert_data_source(test::data_source(std::to_string(i), i));
  }
  EXPECT_EQ(add("last"), 0);
  const std::string before = test::show();
  EXPECT_EQ(add("last", "name", "7"), kDevcfgAlreadyExists);
  EXPECT_EQ(add("more", "name", "7"), kDevcfgVaultListFull);
  int code = 0;
  EXPECT_EQ(devcfg_add_device(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                              nullptr, 0, false, true, &code),
            nullptr);
  EXPECT_EQ(code, kDevcfgVaultIdMissing);
  EXPECT_EQ(test::show(), before);
}

TEST(AddDevice, TextsOfAnyKindReachEveryCallWhole) {
  const std::string kTexts[] = {"it's \"quoted\"; DROP TABLE data_source; -- 100%s%n%d %",
                                "攝影機 ünïcode / \\", std::string(10'000, 'x'),
                                "\xFF\xFE\x01 broken", " line\nfeed\ttab "};
  const test::TempVault folder;
  for (std::string text : kTexts) {
    const std::shared_ptr<json_object> json(json_object_new_string(text.c_str()), json_object_put);
    const std::string quoted =
        json_object_to_json_string_ext(json.get(), JSON_C_TO_STRING_NOSLASHESCAPE);
    const std::string channel = R"({"channel_index":0,"guid":)" + quoted + ",\"name\":";
    EXPECT_EQ(add(text, text, "[" + channel + "\"\"}]"), 0);
    EXPECT_EQ(notify_camera_modified(text.data(), text.data(), 0), 0);
    const std::string filter = R"({"type":0,"target":)" + quoted + R"(,"result":"%s","name":""})";
    EXPECT_EQ(devcfg_modify_filter(text.data(), test::Json("[" + filter + "]")), 0);
    int matches = 0;
    EXPECT_EQ(devcfg_check_vault_exist(text.data(), &matches) + matches, 1);
    EXPECT_EQ(devcfg_check_vault_name(text.data(), &matches) + matches, 1);
    EXPECT_EQ(test::show(text),
              R"({"vault_list":[{"vault_id":)" + quoted + ",\"vault_name\":" + quoted +
                  R"(,"description":"old","type":"old","index":0,)" +
                  R"("enable":true,"status":{"last_recv_time_str":""},)" + "\"filter\":[" + filter +
                  "],\"channel_guid_list\":[" + channel + quoted + "}]}]}");
    test::Buffer name(kVaultNameBytes);
    test::Buffer description(kDescriptionBytes);
    EXPECT_EQ(devcfg_remove_device(text.data(), name.data(), description.data()), 0);
    EXPECT_STREQ(description.data(), "old");
    EXPECT_EQ(name.data(), text.substr(0, 64));
    EXPECT_TRUE(name.guard_untouched() && description.guard_untouched());
    EXPECT_TRUE(test::stored().empty());
  }
}
