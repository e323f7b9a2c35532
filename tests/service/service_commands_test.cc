#include "tests/support/library.h"

TEST(ServiceCommands, GiveTheExitStatusOrTellTheFailure) {
  static char device_id[] = "a b; touch x $(id)";
  // The program, its arguments.
  const std::tuple<int (*)(), std::string, std::vector<std::string>> kCommands[] = {
      {devcfg_restart_all, "/etc/init.d/Kmetadatad.sh", {"restart"}},
      {devcfg_dev_reload_all, "/usr/bin/kdevmgmt", {"dev_reload_all"}},
      {[] { return devcfg_dev_load(device_id); }, "/usr/bin/kdevmgmt", {"dev_load", device_id}},
      {[] { return devcfg_dev_unload(device_id); }, "/usr/bin/kdevmgmt", {"dev_unload", device_id}},
  };
  // Status words and results.
  const std::pair<int, int> kOutcomes[] = {{0, 0},  {3 << 8, 3},     {255 << 8, 255},   {0x80, 0},
                                           {9, -1}, {11 | 0x80, -1}, {3 << 8 | 15, -1}, {-1, -1}};
  for (const auto& [call, path, words] : kCommands) {
    std::string printed = "<" ORVANEIP_ROOT + path + ">";
    std::string line = "[libdevcfg] System command error: " + path;
    for (const std::string& word : words) {
      printed += "<" + word + ">";
      line += " " + word;
    }
    for (const auto& [status, result] : kOutcomes) {
      test::take_log();
      setenv("STAND_IN_ANSWER", std::to_string(status).c_str(), 1);
      testing::internal::CaptureStdout();
      EXPECT_EQ(call(), result) << line << status;
      EXPECT_EQ(testing::internal::GetCapturedStdout(), printed);
      EXPECT_EQ(test::take_product_log(), std::vector<std::string>(result < 0, line));
    }
  }
}

TEST(ServiceCommands, RunNothingWithoutADevice) {
  const std::string program = "[libdevcfg] /usr/bin/kdevmgmt ";
  testing::internal::CaptureStdout();
  test::take_log();
  EXPECT_TRUE(devcfg_dev_load(nullptr) == -1 && devcfg_dev_unload(nullptr) == -1);
  const std::vector<std::string> log = {program + "dev_load: no device identifier",
                                        program + "dev_unload: no device identifier"};
  EXPECT_EQ(test::take_product_log(), log);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}
