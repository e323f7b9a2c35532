// Every write of every command fails once: the command never says that it is done when it is not.
#include <gtest/gtest.h>

#include "tests/cli/command.h"

namespace {

using test::CommandVault;

test::Outcome run_failing(const CommandVault& vault, const test::Arguments& arguments, int write) {
  return test::run(FAILING_DEVCFG, arguments, "",
                   {"ORVANE_VAULT=" + vault.database(), "FAILING_WRITE=" + std::to_string(write)});
}

void fill(const CommandVault& vault) {
  ASSERT_EQ(vault.devcfg({"import", test::shop_path("shop.json")}).exit_status, 0);
}

std::string content_after(const test::Arguments& arguments) {
  const CommandVault vault;
  fill(vault);
  EXPECT_EQ(vault.devcfg(arguments).exit_status, 0) << arguments.front();
  return vault.content();
}

// Lets each write of the command fail in turn. The number of writes that it makes; `check` looks at
// the vault after each failure.
template <typename Check>
int fail_each_write(const test::Arguments& arguments, Check check) {
  const std::string done = content_after(arguments);
  for (int write = 1;; ++write) {
    const CommandVault vault;
    fill(vault);
    const test::Outcome outcome = run_failing(vault, arguments, write);
    if (outcome.exit_status == 0) {
      EXPECT_EQ(vault.content(), done) << arguments.front() << ", write " << write;
      return write - 1;
    }
    EXPECT_EQ(outcome.exit_status, 1) << outcome.errors;
    EXPECT_EQ(outcome.errors.find("devcfg: "), 0U) << outcome.errors;
    check(vault, outcome.errors);
  }
}

}  // namespace

TEST(FailingVault, AChangeThatDidNotArriveIsTold) {
  struct Row {
    test::Arguments arguments;
    int writes;
    const char* reason;
  };
  const Row kRows[] = {
      {{"add", "new", "--type", "t", "--name", "n", "--channel", "0:a:b", "--channel", "1:c:d"},
       3,
       "added"},
      {{"modify", "till-1", "--description", "New"},
       1,
       "the change of \"till-1\" did not arrive in the vault; --log tells why"},
      {{"modify", "till-1", "--disable", "--channel", "0:a:b"},
       3,
       "the change of \"till-1\" did not arrive in the vault; --log tells why"},
      {{"remove", "till-1", "till-2"}, 2, "did not arrive"},
      {{"filters", "set", "till-1", test::shop_path("filters-door-staff.json")},
       3,
       "the filter list of \"till-1\" did not arrive"},
      {{"camera", "removed", "cam-yard"}, 1, "the removal of camera \"cam-yard\" did not arrive"},
      {{"camera", "renamed", "cam-yard", "New"}, 2, "the new name of camera"},
  };
  for (const Row& row : kRows) {
    const int writes =
        fail_each_write(row.arguments, [&row](const CommandVault&, const std::string& errors) {
          EXPECT_NE(errors.find(row.reason), std::string::npos) << errors;
        });
    EXPECT_EQ(writes, row.writes) << row.arguments.front();
  }
}

TEST(FailingVault, AFailedImportIsTakenBack) {
  const CommandVault reference;
  fill(reference);
  const std::string before = reference.content();
  const test::TempFolder folder;
  std::string document = before;
  for (const char* id : {"till-1", "door-staff", "plates-yard", "till-2"}) {
    document =
        test::replaced(document, '"' + std::string(id) + '"', "\"new-" + std::string(id) + '"');
  }
  test::write_file(folder.file("shop.json"), document);
  int failures = 0;
  const int writes = fail_each_write(
      {"import", folder.file("shop.json"), "--replace"},
      [&](const CommandVault& vault, const std::string& errors) {
        EXPECT_EQ(vault.content(), before) << errors;
        EXPECT_NE(errors.find("no space is left for the vault database (result 8)\nuntil then: "),
                  std::string::npos)
            << errors;
        ++failures;
      });
  // 4 removed; 4 added, with 8 channels, 9 filters and a time each.
  EXPECT_EQ(writes, 4 + 4 + 8 + 9 + 4);
  EXPECT_EQ(failures, writes);
}
