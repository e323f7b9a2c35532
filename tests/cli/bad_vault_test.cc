// Vaults that cannot be used: every command says so, and nothing is overwritten.
#include <sys/stat.h>
#include <unistd.h>

#include "tests/cli/command.h"

namespace {

using test::CommandVault;

const std::vector<std::string> kReads = {"list",
                                         "show till-1 --json",
                                         "channels till-1",
                                         "export",
                                         "filters show till-1",
                                         "channels",
                                         "import shop.json --replace --dry-run"};
const std::vector<std::string> kChanges = {
    "add --type t --name n", "modify till-1 --disable", "filters set till-1 filters-till-2.json",
    "remove till-1",         "camera removed cam-yard", "camera renamed cam-yard x",
    "import shop.json"};

// For the superuser the permissions of files count only without these capabilities.
test::Outcome devcfg(const CommandVault& vault, const std::string& words) {
  const std::string drop = "setpriv --bounding-set=-dac_override,-dac_read_search ";
  return vault.devcfg(words, "", (geteuid() == 0 ? drop : "") + "\"$devcfg\"");
}

void check_refused(const CommandVault& vault, const std::vector<std::string>& commands,
                   const std::string& reason) {
  for (const std::string& words : commands) {
    const test::Outcome outcome = devcfg(vault, words);
    EXPECT_EQ(outcome.exit_status, 1) << words;
    EXPECT_EQ(outcome.output, "") << words;
    EXPECT_TRUE(outcome.errors.starts_with("devcfg: " + reason)) << words << ": " << outcome.errors;
  }
}

}  // namespace

TEST(BadVault, GarbageIsNeverOverwritten) {
  const CommandVault vault;
  const std::string garbage = "This is no database.\n" + std::string(4096, '\xE5');
  const std::string reason =
      "the vault cannot be opened: the file is damaged or not a vault database (result 9)";
  test::write_file(vault.database(), garbage);
  check_refused(vault, kReads, reason);
  check_refused(vault, kChanges, reason);
  EXPECT_EQ(test::read_file(vault.database()), garbage);
}

TEST(BadVault, AFileWithoutPermissionIsNotChanged) {
  const CommandVault vault;
  vault.import_shop();
  const std::string before = vault.content();
  ASSERT_EQ(chmod(vault.database().c_str(), 0), 0);
  check_refused(vault, kReads, "the vault cannot be opened: the vault database cannot be opened");
  ASSERT_EQ(chmod(vault.database().c_str(), 0400), 0);
  check_refused(vault, kChanges, "");
  for (const std::string& words : kReads) {
    EXPECT_EQ(devcfg(vault, words).exit_status, 0) << words;
  }
  EXPECT_EQ(devcfg(vault, "export").output, before);
  ASSERT_EQ(chmod(vault.database().c_str(), 0600), 0);
  EXPECT_EQ(vault.content(), before);
}
