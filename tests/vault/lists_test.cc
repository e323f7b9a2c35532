#include <cstdint>
#include <cstdlib>

#include "tests/support/run_sql.h"
#include "tests/support/vault_calls.h"

TEST(ModifyFilter, ReplacesTheWholeListOrRefusesIt) {
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
  const test::TempVault temp_vault;
  test::add("a");
  char a[] = "a", none[] = "none";
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
  bool has_token = true;
  EXPECT_EQ(devcfg_check_filter_token(nullptr, nullptr) + devcfg_clear_filter_token(nullptr), 0);
  EXPECT_EQ(devcfg_check_filter_token(nullptr, &has_token), 0);
  EXPECT_FALSE(has_token);
  test::take_log();
  EXPECT_EQ(devcfg_modify_filter(nullptr, test::Json("[]")), kDevcfgVaultIdMissing);
  const std::string line = "[devcfg](devcfg_modify_filter:N) Vault ID=(null) doesn't exist";
  EXPECT_EQ(test::take_log(), std::vector{line});
}

TEST(Cameras, ChangesReachEveryDataSource) {
  const test::TempVault temp_vault;
  const auto channels = [&temp_vault] {  // of both data sources, as "index guid name" each
    return test::run_sql(temp_vault.database(),
                         "SELECT group_concat(channel_index || guid || name, ' ') FROM"
                         " (SELECT * FROM channel ORDER BY vault_id, channel_index)");
  };
  for (const char* id : {"a", "b"}) {
    test::add(id, id,
              R"([{"guid":"cam","channel_index":8,"name":"old"},)"
              R"({"guid":"CAM","channel_index":2,"name":"other"}])");
  }
  test::OpenVault()->insert_channel({"", "a", 9, "", "none"});
  char cam[] = "cam", name[] = "%s", empty[] = "";
  EXPECT_EQ(notify_camera_modified(nullptr, name, 0), -1);
  EXPECT_EQ(notify_camera_modified(empty, name, 0), -1);
  EXPECT_EQ(notify_camera_modified(cam, nullptr, 0), -1);
  EXPECT_EQ(notify_camera_modified(name, name, 0), 0);
  EXPECT_EQ(notify_camera_removed(nullptr) + notify_camera_removed(name), 0);
  EXPECT_EQ(channels(), "2CAMother 8camold 9none 2CAMother 8camold");
  EXPECT_EQ(notify_camera_modified(cam, name, 0), 0);
  EXPECT_EQ(channels(), "2CAMother 8cam%s 9none 2CAMother 8cam%s");
  EXPECT_EQ(notify_camera_removed(cam) + notify_camera_removed(empty), 0);
  EXPECT_EQ(channels(), "2CAMother 2CAMother");
}

TEST(ListDevices, ReturnsWholeDocumentsWithTheLastReceiveTime) {
  const test::TempVault temp_vault;
  EXPECT_EQ(test::show(), R"({"vault_list":[]})");
  EXPECT_EQ(test::show("x"), R"({"vault_list":[]})");
  test::OpenVault vault;
  vault->insert_data_source(test::data_source("b", 5));
  vault->insert_data_source(test::data_source("a", 2));
  vault->insert_data_source(test::data_source("c", -1));
  vault->insert_channel({"", "a", 30, "g30", "n"});
  vault->insert_channel({"", "a", 4, "g4", "m"});
  vault->insert_filter({"", "a", -7, "z", "x/y", "later"});
  vault->insert_filter({"", "a", 2, "a", "", "b"});
  const std::string lists = R"("filter":[{"type":-7,"target":"z","result":"x/y","name":"later"},)"
                            R"({"type":2,"target":"a","result":"","name":"b"}],)"
                            R"("channel_guid_list":[{"channel_index":4,"guid":"g4","name":"m"},)"
                            R"({"channel_index":30,"guid":"g30","name":"n"}]})";
  const auto start_of = [](const std::string& id, const std::string& index) {
    return R"({"vault_id":")" + id + R"(","vault_name":"name of )" + id +
           R"(","description":"","type":"","index":)" + index +
           R"(,"enable":true,"status":{"last_recv_)";
  };
  const std::string none = R"("filter":[],"channel_guid_list":[]},)";
  EXPECT_EQ(test::show("a"), std::string(R"({"vault_list":[)") + start_of("a", "2") +
                                 R"(time_str":""},)" + lists + "]}");
  const std::tuple<const char*, std::int64_t, std::string, std::string> kRows[] = {
      {"Asia/Taipei", 1'700'000'000'123, "2023-11-15 06:13:20", "1700028800123"},
      {"Asia/Taipei", 999, "1970-01-01 08:00:00", "28800999"},
      {"Asia/Taipei", -28'800'000, "1970-01-01 00:00:00", "0"},
      {"Asia/Taipei", INT64_MAX, "292278994-08-17 15:12:55", "9223372036854775807"},
      {"Asia/Taipei", INT64_MIN, "-292275055-05-17 00:53:05", "-9223372036825975808"},
      {"UTC+8", INT64_MIN, "-292275055-05-16 08:47:05", "-9223372036854775808"},
  };
  for (const auto& [zone, time_ms, date, server_time] : kRows) {
    setenv("TZ", zone, 1);
    const std::string time = std::to_string(time_ms);
    test::run_sql(temp_vault.database(), "UPDATE data_source SET last_recv_time = CAST('" + time +
                                             "' AS INTEGER) WHERE list_index = 5");
    EXPECT_NE(test::show("b").find(R"({"last_recv_time_str":")" + time + "\"},"),
              std::string::npos);
    EXPECT_EQ(test::show(), std::string(R"({"vault_list":[)") + start_of("c", "-1") +
                                R"(date":""},)" + none + start_of("a", "2") + R"(date":""},)" +
                                lists + "," + start_of("b", "5") + R"(date":")" + date +
                                R"(","server_time":")" + server_time +
                                R"("},"filter":[],"channel_guid_list":[]}]})");
  }
  int code = 0;
  EXPECT_EQ(devcfg_get_device(nullptr, &code), nullptr);
  EXPECT_EQ(code, kDevcfgDeviceIdMissing);
  char empty[] = "";
  EXPECT_EQ(devcfg_get_device(empty, nullptr), nullptr);
}
