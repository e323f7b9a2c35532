#include <gtest/gtest.h>

#include "tests/support/captured_log.h"
#include "tests/support/temp_folder.h"
#include "tests/support/vault_calls.h"

TEST(ModifyFilter, ReplacesTheListOrRefusesItWhole) {
  constexpr char kOne[] = R"([{"type":3,"target":"t","result":"r","name":"n"}])";
  const std::tuple<const char*, int, const char*> kRows[] = {
      {kOne, 0, kOne},
      {"", kDevcfgFailed, kOne},
      {"{}", kDevcfgFailed, kOne},
      {"[{},null]", kDevcfgFailed, kOne},
      {"[{},[]]", kDevcfgFailed, kOne},
      {R"([{},{"type":"-5","target":7,"result":[1],"name":null}])", 0,
       R"([{"type":0,"target":"","result":"","name":""},)"
       R"({"type":-5,"target":"7","result":"[ 1 ]","name":""}])"},
      {"[]", 0, "[]"},
  };
  const test::TempVault folder;
  test::add("a");
  char a[] = "a";
  char none[] = "none";
  for (const auto& [list, result, stored] : kRows) {
    test::take_log();
    EXPECT_EQ(devcfg_modify_filter(a, test::Json(list)), result) << list;
    EXPECT_EQ(test::take_log().size(), result == 0 ? 0U : 1U);
    EXPECT_NE(test::show(a).find(std::string("\"filter\":") + stored + ","), std::string::npos);
    EXPECT_EQ(devcfg_modify_filter(none, test::Json("[{},{}]")), 0);
  }
  std::vector<metadata_vault::Filter> found;
  EXPECT_EQ(test::OpenVault()->query_filter(none, found), 0);
  EXPECT_EQ(found.size(), 2U);
}

TEST(ModifyFilter, NeedsAnIdentifierAndTokensAreNone) {
  test::take_log();
  char empty[] = "";
  EXPECT_EQ(devcfg_modify_filter(nullptr, test::Json("[]")), kDevcfgVaultIdMissing);
  EXPECT_EQ(devcfg_modify_filter(empty, test::Json("[]")), kDevcfgVaultIdMissing);
  const std::vector<std::string> expected = {
      "[devcfg](devcfg_modify_filter:N) Vault ID=(null) doesn't exist",
      "[devcfg](devcfg_modify_filter:N) Vault ID= doesn't exist"};
  EXPECT_EQ(test::take_log(), expected);
  bool has_token = true;
  EXPECT_EQ(devcfg_check_filter_token(nullptr, nullptr), 0);
  EXPECT_EQ(devcfg_check_filter_token(nullptr, &has_token), 0);
  EXPECT_FALSE(has_token);
  EXPECT_EQ(devcfg_clear_filter_token(nullptr), 0);
}

TEST(Cameras, ChangesReachEveryDataSource) {
  const test::TempVault folder;
  // What the channels of both data sources are, as "index guid name" each.
  const auto channels = [] {
    std::string text;
    for (const auto& record : test::stored()) {
      for (const auto& channel : record.channel_guid_list) {
        text += std::to_string(channel.channel_index) + channel.guid + channel.name + " ";
      }
    }
    return text;
  };
  for (const char* id : {"a", "b"}) {
    test::add(id, id,
              R"([{"guid":"cam","channel_index":8,"name":"old"},)"
              R"({"guid":"CAM","channel_index":2,"name":"other"}])");
  }
  test::OpenVault()->insert_channel({"", "a", 9, "", "none"});
  char cam[] = "cam";
  char name[] = "%s";
  char empty[] = "";
  EXPECT_EQ(notify_camera_modified(nullptr, name, 0), -1);
  EXPECT_EQ(notify_camera_modified(empty, name, 0), -1);
  EXPECT_EQ(notify_camera_modified(cam, nullptr, 0), -1);
  EXPECT_EQ(notify_camera_modified(name, name, 0), 0);
  EXPECT_EQ(notify_camera_removed(nullptr) + notify_camera_removed(name), 0);
  EXPECT_EQ(channels(), "2CAMother 8camold 9none 2CAMother 8camold ");
  EXPECT_EQ(notify_camera_modified(cam, name, 0), 0);
  EXPECT_EQ(channels(), "2CAMother 8cam%s 9none 2CAMother 8cam%s ");
  EXPECT_EQ(notify_camera_removed(cam), 0);
  EXPECT_EQ(channels(), "2CAMother 9none 2CAMother ");
  EXPECT_EQ(notify_camera_removed(empty), 0);
  EXPECT_EQ(channels(), "2CAMother 2CAMother ");
}
