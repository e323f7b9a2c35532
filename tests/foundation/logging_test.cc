#include <gtest/gtest.h>

#include "orvaneip.h"
#include "tests/support/captured_log.h"

TEST(LogConsole, AddsALineFeedAndExpandsOnce) {
  testing::internal::CaptureStdout();
  LogConsole("camera %s of %d", "50%s%n", 7);
  LogConsole("line\n");
  LogConsole("%s", std::string(20'000, 'x').c_str());
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "camera 50%s%n of 7\nline\n\n" + std::string(kLogMessageBytes - 1, 'x') + "\n");
}

TEST(LogDebug, HandsTheTextToTheDebugLogUnchanged) {
  test::take_log();
  LogDebug("[CSqlite] ExecSQL error: %s\n", "near \"%d%n\"");
  LogDebug("%s", std::string(kLogMessageBytes, 'x').c_str());
  const std::vector<std::string> expected = {"[CSqlite] ExecSQL error: near \"%d%n\"\n",
                                             std::string(kLogMessageBytes - 1, 'x')};
  EXPECT_EQ(test::take_debug_log(), expected);
}
