#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/cli/command.h"

TEST(Demo, EveryStepDoesWhatItSays) {
  const std::string folder = std::filesystem::path(ORVANEIP_DEVCFG).parent_path();
  const test::TempFolder temporary;
  const test::Outcome outcome =
      test::run("bash", {ORVANEIP_SOURCE_DIR "/examples/demo.sh"}, "",
                {"PATH=" + folder + ":" + std::getenv("PATH"), "TMPDIR=" + temporary.path()});
  EXPECT_EQ(outcome.exit_status, 0) << outcome.output << outcome.errors;
  EXPECT_NE(outcome.output.find("$ devcfg import backup.json --dry-run\n"), std::string::npos);
  EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
}
