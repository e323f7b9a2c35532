// Running devcfg in a test, on a vault of its own.
#pragma once

#include <string>
#include <vector>

#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace test {

// A folder with an empty vault.
struct CommandVault : TempFolder {
  std::string database() const { return file("vault.db"); }

  // Runs a shell command, by default devcfg ("$devcfg"), with these words behind it in the folder
  // examples/shop.
  Outcome devcfg(const std::string& words, const std::string& input = "",
                 const std::string& command = "\"$devcfg\"") const;

  void import_shop() const;

  // Everything that is stored, as one text.
  std::string content() const;
};

// One call of devcfg, and what is expected of it: a part of standard output when the status is 0,
// else of standard error ("" for none at all), and nothing on the other one.
struct Step {
  std::string words;
  int exit_status;
  std::string text;
  std::string input = "";
};

// Runs the steps one after the other on the vault and checks each.
void check_steps(const CommandVault& vault, const std::vector<Step>& steps);

void expect_part(const std::string& text, const std::string& part);

// The text with the first `from` replaced, which must be there.
std::string replaced(std::string text, const std::string& from, const std::string& to);

}  // namespace test
