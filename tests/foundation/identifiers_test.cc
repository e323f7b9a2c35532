#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "orvaneip.h"

TEST(Identifiers, ArePrefixAndFreshHexadecimalDigits) {
  std::set<std::string> seen;
  for (int i = 0; i < 1000; ++i) {
    const std::string both = create_device_id() + create_terminal_id();
    EXPECT_TRUE(std::regex_match(both, std::regex("ID[0-9A-F]{32}TID[0-9A-F]{32}"))) << both;
    seen.insert({both.substr(0, 34), both.substr(35)});
  }
  EXPECT_EQ(seen.size(), 2000U);
  EXPECT_EQ(kDeviceIdBytes, 35U);
}
