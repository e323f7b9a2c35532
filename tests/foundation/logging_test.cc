#include <gtest/gtest.h>

#include "orvaneip.h"
#include "tests/support/captured_log.h"

namespace {

std::string console(void (*log)()) {
  testing::internal::CaptureStdout();
  log();
  return testing::internal::GetCapturedStdout();
}

}  // namespace

TEST(LogConsole, AddsALineFeedAndExpandsOnce) {
  EXPECT_EQ(console([] { LogConsole("camera %s of %d", "50%s%n", 7); }), "camera 50%s%n of 7\n");
  EXPECT_EQ(console([] { LogConsole("line\n"); }), "line\n\n");
  EXPECT_EQ(console([] { LogConsole("%s", std::string(20'000, 'x').c_str()); }),
            std::string(kLogMessageBytes - 1, 'x') + "\n");
}

TEST(LogDebug, HandsTheTextToTheDebugLogUnchanged) {
  test::take_log();
  LogDebug("[CSqlite] ExecSQL error: %s\n", "near \"%d%n\"");
  LogDebug("%s", std::string(kLogMessageBytes, 'x').c_str());
  const std::vector<std::string> expected = {"[CSqlite] ExecSQL error: near \"%d%n\"\n",
                                             std::string(kLogMessageBytes - 1, 'x')};
  EXPECT_EQ(test::take_debug_log(), expected);
}
