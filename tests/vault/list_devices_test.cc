#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>

#include "tests/support/temp_folder.h"
#include "tests/support/vault_calls.h"

namespace {

void receive(const std::string& vault_id, std::int64_t time_ms) {
  auto record = test::stored(vault_id).at(0);
  record.last_recv_time = time_ms;
  EXPECT_EQ(test::OpenVault()->update_data_source(record), 0);
}

}  // namespace

TEST(ListDevices, GivesWholeDocuments) {
  const test::TempVault folder;
  setenv("TZ", "Asia/Taipei", 1);
  EXPECT_EQ(test::show(), R"({"vault_list":[]})");
  EXPECT_EQ(test::show("x"), R"({"vault_list":[]})");
  test::OpenVault vault;
  vault->insert_data_source(test::data_source("b", 5));
  vault->insert_data_source(test::data_source("a", 2));
  vault->insert_data_source(test::data_source("c", -1));
  receive("b", 1'700'000'000'123);
  vault->insert_channel({"", "a", 30, "g30", "n"});
  vault->insert_channel({"", "a", 4, "g4", "m"});
  vault->insert_filter({"", "a", -7, "z", "x/y", "later"});
  vault->insert_filter({"", "a", 2, "a", "", "b"});
  const auto document = [](const char* id, const char* index, const std::string& status,
                           const char* filters, const char* channels) {
    return std::string("{\"vault_id\":\"") + id + R"(","vault_name":"name of )" + id +
           R"(","description":"","type":"","index":)" + index + R"(,"enable":true,"status":{)" +
           status + "},\"filter\":[" + filters + "],\"channel_guid_list\":[" + channels + "]}";
  };
  const char* filters = R"({"type":-7,"target":"z","result":"x/y","name":"later"},)"
                        R"({"type":2,"target":"a","result":"","name":"b"})";
  const char* channels = R"({"channel_index":4,"guid":"g4","name":"m"},)"
                         R"({"channel_index":30,"guid":"g30","name":"n"})";
  EXPECT_EQ(test::show("a"),
            "{\"vault_list\":[" +
                document("a", "2", R"("last_recv_time_str":"")", filters, channels) + "]}");
  EXPECT_EQ(test::show(),
            "{\"vault_list\":[" + document("c", "-1", R"("last_recv_date":"")", "", "") + "," +
                document("a", "2", R"("last_recv_date":"")", filters, channels) + "," +
                document("b", "5",
                         R"("last_recv_date":"2023-11-15 06:13:20","server_time":"1700028800123")",
                         "", "") +
                "]}");
}

TEST(ListDevices, TellsTheLastReceiveTime) {
  const std::tuple<std::int64_t, std::string, std::string> kRows[] = {
      {999, "1970-01-01 08:00:00", "28800999"},
      {-28'800'000, "1970-01-01 00:00:00", "0"},
      {INT64_MAX, "292278994-08-17 15:12:55", "9223372036854775807"},
      {INT64_MIN, "-292275055-05-17 00:53:05", "-9223372036825975808"},
  };
  const test::TempVault folder;
  setenv("TZ", "Asia/Taipei", 1);
  test::add("x");
  for (const auto& [time, date, server_time] : kRows) {
    receive("x", time);
    const std::string one = "\"last_recv_time_str\":\"" + std::to_string(time);
    const std::string all = "\"last_recv_date\":\"" + date + "\",\"server_time\":\"" + server_time;
    EXPECT_NE(test::show("x").find("\"status\":{" + one + "\"},"), std::string::npos);
    EXPECT_NE(test::show().find("\"status\":{" + all + "\"},"), std::string::npos);
  }
}

TEST(ListDevices, RefusesAMissingIdentifier) {
  int code = 0;
  char empty[] = "";
  EXPECT_EQ(devcfg_get_device(nullptr, &code), nullptr);
  EXPECT_EQ(code, kDevcfgDeviceIdMissing);
  EXPECT_EQ(devcfg_get_device(empty, nullptr), nullptr);
}
