// Running devcfg in a test, on a vault of its own.
#pragma once

#include <string>
#include <vector>

#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace test {

using Arguments = std::vector<std::string>;

// Runs the built devcfg on the vault database of this file.
Outcome devcfg_on(const std::string& database, const Arguments& arguments,
                  const std::string& input = "");

// A folder with an empty vault.
class CommandVault {
 public:
  Outcome devcfg(const Arguments& arguments, const std::string& input = "") const {
    return devcfg_on(database(), arguments, input);
  }
  std::string file(const std::string& name) const { return folder_.file(name); }
  std::string database() const { return folder_.file("vault.db"); }

  // Everything that is stored, as one text.
  std::string content() const;

 private:
  TempFolder folder_;
};

// One call of devcfg, and what is expected of it.
struct Step {
  Arguments arguments;
  std::string input;
  int exit_status;
  std::string output;  // a part of standard output; "" for none at all
  std::string errors;  // a part of standard error; "" for none at all
};

// Runs the steps one after the other on the vault and checks each.
void check_steps(const CommandVault& vault, const std::vector<Step>& steps);

// A file of examples/shop/, or the path of it.
std::string shop_path(const std::string& name);
std::string shop_file(const std::string& name);

// The text with the first `from` replaced, which must be there.
std::string replaced(std::string text, const std::string& from, const std::string& to);

}  // namespace test
