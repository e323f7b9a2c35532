#include "tests/cli/command.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace test {
namespace {

std::string line_of(const Arguments& arguments) {
  std::string line = "devcfg";
  for (const std::string& argument : arguments) {
    line += ' ' + argument.substr(0, 80);
  }
  return line;
}

void check_text(const std::string& text, const std::string& part) {
  if (part.empty()) {
    EXPECT_EQ(text, "");
  } else {
    EXPECT_NE(text.find(part), std::string::npos) << "no \"" << part << "\" in:\n" << text;
  }
}

}  // namespace

Outcome devcfg_on(const std::string& database, const Arguments& arguments,
                  const std::string& input) {
  return run(ORVANEIP_DEVCFG, arguments, input, {"ORVANE_VAULT=" + database});
}

std::string CommandVault::content() const {
  const Outcome outcome = devcfg({"export"});
  EXPECT_EQ(outcome.exit_status, 0) << outcome.errors;
  return outcome.output;
}

void check_steps(const CommandVault& vault, const std::vector<Step>& steps) {
  for (const Step& step : steps) {
    SCOPED_TRACE(line_of(step.arguments));
    const Outcome outcome = vault.devcfg(step.arguments, step.input);
    EXPECT_EQ(outcome.exit_status, step.exit_status);
    check_text(outcome.output, step.output);
    check_text(outcome.errors, step.errors);
  }
}

std::string shop_path(const std::string& name) {
  return ORVANEIP_SOURCE_DIR "/examples/shop/" + name;
}

std::string shop_file(const std::string& name) { return read_file(shop_path(name)); }

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t place = text.find(from);
  if (place == std::string::npos) {
    throw std::runtime_error("nothing to replace: " + from);
  }
  return text.replace(place, from.size(), to);
}

}  // namespace test
