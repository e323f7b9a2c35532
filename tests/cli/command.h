// Runs devcfg in a test, on its own vault.
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

// Returns the text with its first `from` replaced; throws when it has none.
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);
}

// One call of devcfg and its expected outcome: a part of standard output when the status is 0,
// otherwise of standard error ("": it is empty); the other one is empty.
struct Step {
  std::string words;
  int exit_status;
  std::string text;
  std::string input = "";
};

// A directory with an empty vault.
struct CommandVault : TempDirectory {
  std::string database() const { return file("vault.db"); }

  // When it is not empty, every SQL statement of devcfg that contains it fails.
  std::string failing_statement;

  // Runs devcfg with these words of a shell, after the shell's `limits`, in the directory
  // examples/shop. File permissions apply to the superuser only without two capabilities.
  Outcome devcfg(const std::string& words, const std::string& input = "",
                 const std::string& limits = "") const {
    const std::string shop = "cd '" ORVANEIP_SOURCE_DIR "/examples/shop'; " + limits;
    const std::string drop = "setpriv --bounding-set=-dac_override,-dac_read_search ";
    const std::string preload =
        "env ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD='" FAILING_STATEMENTS
        "' FAILING_STATEMENT=\"" +
        failing_statement + "\" ";
    const std::string fail = failing_statement.empty() ? "" : preload;
    return run("bash",
               {"-c", shop + (geteuid() == 0 ? drop : "") + fail + ORVANEIP_DEVCFG " " + words},
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

  // Returns everything that is stored, as one document.
  std::string content() const {
    const Outcome outcome = devcfg("export");
    EXPECT_EQ(outcome.errors, "");
    return outcome.output;
  }
};

}  // namespace test
