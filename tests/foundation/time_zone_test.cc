#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "orvaneip.h"

namespace {
std::time_t pretended_now = 0;
}

// The library asks this program for the time.
extern "C" __attribute__((visibility("default"))) std::time_t time(std::time_t* result) noexcept {
  if (result != nullptr) {
    *result = pretended_now;
  }
  return pretended_now;
}

TEST(TimeZone, StandardOffsetAllYear) {
  const std::pair<const char*, long> kRows[] = {{"UTC", 0},
                                                {"America/New_York", -18000},
                                                {"Europe/Berlin", 3600},
                                                {"Australia/Sydney", 36000},
                                                {"Asia/Kathmandu", 20700},
                                                {"<+0330>-3:30", 12600}};
  constexpr std::time_t kJanuary = 1768478400;  // 2026-01-15 12:00 UTC
  constexpr std::time_t kJuly = 1784116800;     // 2026-07-15 12:00 UTC
  for (const auto& [zone, offset] : kRows) {
    setenv("TZ", zone, 1);
    for (const std::time_t now : {kJanuary, kJuly}) {
      pretended_now = now;
      EXPECT_EQ(get_timezone_diff(), offset) << zone << " at " << now;
    }
  }
}
