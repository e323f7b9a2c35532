// Running devcfg in a test, on a vault of its own.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "tests/support/process.h"
#include "tests/support/temp_directory.h"

namespace test {

inline void expect_part(const std::string& text, const std::string& part) {
  EXPECT_NE(text.find(part), std::string::npos) << "no \"" << part << "\" in:\n" << text;
  EXPECT_EQ(text.empty(), part.empty()) << text;
}

// The text with the first `from` replaced, which must be there.
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);  // throws when there is none
}

// One call of devcfg, and what is expected of it: a part of standard output when the status is 0,
// else of standard error ("" for none at all), and nothing on the other one.
struct Step {
  std::string words;
  int exit_status;
  std::string text;
  std::string input = "";
};

// A folder with an empty vault.
struct CommandVault : TempDirectory {
  std::string database() const { return file("vault.db"); }

  // Runs devcfg with these words of a shell, behind the shell's `limits`, in the folder
  // examples/shop. For the superuser the permissions of files count only without two capabilities.
  Outcome devcfg(const std::string& words, const std::string& input = "",
                 const std::string& limits = "") const {
    const std::string shop = "cd '" ORVANEIP_SOURCE_DIR "/examples/shop'; " + limits;
    const std::string drop = "setpriv --bounding-set=-dac_override,-dac_read_search ";
    return run("bash", {"-c", shop + (geteuid() == 0 ? drop : "") + ORVANEIP_DEVCFG " " + words},
               input, {"ORVANE_VAULT=" + database()});
  }

  void check(const std::vector<Step>& steps) const {
    for (const Step& step : steps) {
      const Outcome outcome = devcfg(step.words, step.input);
      EXPECT_EQ(outcome.exit_status, step.exit_status) << step.words;
      expect_part(step.exit_status == 0 ? outcome.output : outcome.errors, step.text);
      EXPECT_EQ(step.exit_status == 0 ? outcome.errors : outcome.output, "") << step.words;
    }
  }

  void import_shop() const { check({{"import shop.json", 0, "added"}}); }

  // Everything that is stored, as one text.
  std::string content() const {
    const Outcome outcome = devcfg("export");
    EXPECT_EQ(outcome.errors, "");
    return outcome.output;
  }
};

}  // namespace test
