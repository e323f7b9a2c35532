#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "orvaneip.h"
#include "tests/support/captured_log.h"
#include "tests/support/temp_folder.h"

TEST(Identifiers, ArePrefixAndFreshHexadecimalDigits) {
  std::set<std::string> seen;
  for (int i = 0; i < 1000; ++i) {
    const std::string device = create_device_id();
    const std::string terminal = create_terminal_id();
    EXPECT_TRUE(std::regex_match(device, std::regex("ID[0-9A-F]{32}"))) << device;
    EXPECT_TRUE(std::regex_match(terminal, std::regex("TID[0-9A-F]{32}"))) << terminal;
    seen.insert(device);
    seen.insert(terminal.substr(1));
  }
  EXPECT_EQ(seen.size(), 2000U);
  EXPECT_EQ(create_device_id().size() + 1, kDeviceIdBytes);
}

TEST(FileExist, ToldByOpeningForReading) {
  const test::TempFolder folder;
  std::string present = folder.file("present");
  std::string missing = folder.file("missing %s");
  test::write_file(present, "");
  test::take_log();
  EXPECT_TRUE(check_file_exist(present.data()));
  EXPECT_TRUE(test::take_log().empty());
  EXPECT_FALSE(check_file_exist(missing.data()));
  EXPECT_FALSE(check_file_exist(nullptr));
  const std::vector<std::string> expected = {
      "[libdevcfg] check_file_exist, File " + missing + " not exist",
      "[libdevcfg] check_file_exist, File (null) not exist"};
  EXPECT_EQ(test::take_product_log(), expected);
}
