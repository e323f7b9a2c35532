// Every write of every command fails once: the command never says that it is done when it is not.

#include <functional>

#include "tests/cli/command.h"

namespace {

using test::CommandVault;

// Lets each write of the command fail in turn and checks the reason. The number of writes that it
// makes; `check` looks at the vault after each failure.
int fail_each_write(
    const std::string& words, const std::string& reason,
    const std::function<void(const CommandVault&)>& check = [](const CommandVault&) {}) {
  const CommandVault done;
  done.import_shop();
  EXPECT_EQ(done.devcfg(words).exit_status, 0) << words;
  for (int write = 1;; ++write) {
    const CommandVault vault;
    vault.import_shop();
    const std::string failing = "FAILING_WRITE=" + std::to_string(write) + " '" FAILING_DEVCFG "'";
    const test::Outcome outcome = vault.devcfg(words, "", failing);
    if (outcome.exit_status != 1) {
      EXPECT_EQ(outcome.exit_status, 0) << outcome.errors;
      EXPECT_EQ(vault.content(), done.content()) << words << ", write " << write;
      return write - 1;
    }
    EXPECT_TRUE(outcome.errors.starts_with("devcfg: ")) << outcome.errors;
    test::expect_part(outcome.errors, reason);
    check(vault);
  }
}

}  // namespace

TEST(FailingVault, AChangeThatDidNotArriveIsTold) {
  const std::tuple<const char*, int, const char*> kRows[] = {
      {"add new --type t --name n --channel 0:a:b --channel 1:c:d", 3, "added"},
      {"modify till-1 --description New", 1,
       "the change of \"till-1\" did not arrive in the vault; --log tells why"},
      {"modify till-1 --disable --channel 0:a:b", 3, "the change of \"till-1\" did not arrive"},
      {"remove till-1 till-2", 2, "did not arrive"},
      {"filters set till-1 filters-door-staff.json", 3, "filter list of \"till-1\" did not arrive"},
      {"camera removed cam-yard", 1, "the removal of camera \"cam-yard\" did not arrive"},
      {"camera renamed cam-yard New", 2, "the new name of camera"},
  };
  for (const auto& [words, writes, reason] : kRows) {
    EXPECT_EQ(fail_each_write(words, reason), writes) << words;
  }
}

TEST(FailingVault, AFailedImportIsTakenBack) {
  const CommandVault reference;
  reference.import_shop();
  const std::string before = reference.content();
  std::string document = before;
  for (const std::string id : {"till-1\"", "door-staff\"", "plates-yard\"", "till-2\""}) {
    document = test::replaced(document, '"' + id, "\"new-" + id);
  }
  test::write_file(reference.file("shop.json"), document);
  const int writes =
      fail_each_write("import --replace " + reference.file("shop.json"),
                      "no space is left for the vault database (result 8)\nuntil then: ",
                      [&before](const CommandVault& vault) { EXPECT_EQ(vault.content(), before); });
  // 4 removed; 4 added, with 8 channels, 9 filters and a time each.
  EXPECT_EQ(writes, 4 + 4 + 8 + 9 + 4);
}
