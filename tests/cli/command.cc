#include "tests/cli/command.h"

#include <gtest/gtest.h>

namespace test {

Outcome CommandVault::devcfg(const std::string& words, const std::string& input,
                             const std::string& command) const {
  return run("bash", {"-c", "cd '" ORVANEIP_SOURCE_DIR "/examples/shop'; " + command + " " + words},
             input, {"ORVANE_VAULT=" + database(), "devcfg=" ORVANEIP_DEVCFG});
}

void CommandVault::import_shop() const { ASSERT_EQ(devcfg("import shop.json").exit_status, 0); }

std::string CommandVault::content() const {
  const Outcome outcome = devcfg("export");
  EXPECT_EQ(outcome.exit_status, 0) << outcome.errors;
  return outcome.output;
}

void check_steps(const CommandVault& vault, const std::vector<Step>& steps) {
  for (const Step& step : steps) {
    SCOPED_TRACE(step.words);
    const Outcome outcome = vault.devcfg(step.words, step.input);
    EXPECT_EQ(outcome.exit_status, step.exit_status);
    const bool done = step.exit_status == 0;
    expect_part(done ? outcome.output : outcome.errors, step.text);
    EXPECT_EQ(done ? outcome.errors : outcome.output, "");
  }
}

void expect_part(const std::string& text, const std::string& part) {
  EXPECT_NE(text.find(part), std::string::npos) << "no \"" << part << "\" in:\n" << text;
  EXPECT_EQ(text.empty(), part.empty()) << text;
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);  // throws when there is none
}

}  // namespace test
