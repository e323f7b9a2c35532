// Vaults that cannot be used: every command says so, and nothing is overwritten.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/cli/command.h"

namespace {

using test::CommandVault;

const std::vector<test::Arguments> kCommands = {
    {"add", "--type", "t", "--name", "n"},
    {"add", "x", "--type", "t", "--name", "n"},
    {"list"},
    {"list", "--json"},
    {"show", "till-1"},
    {"show", "till-1", "--json"},
    {"channels"},
    {"channels", "till-1"},
    {"modify", "till-1", "--disable"},
    {"remove", "till-1"},
    {"export"},
    {"import", test::shop_path("shop.json")},
    {"import", test::shop_path("shop.json"), "--replace", "--dry-run"},
    {"filters", "show", "till-1"},
    {"filters", "set", "till-1", test::shop_path("filters-till-2.json")},
    {"camera", "removed", "cam-yard"},
    {"camera", "renamed", "cam-yard", "x"},
};

// For the superuser the permissions of files count only without these capabilities.
test::Outcome devcfg_with_permissions(const CommandVault& vault, const test::Arguments& arguments) {
  if (geteuid() != 0) {
    return vault.devcfg(arguments);
  }
  test::Arguments words = {"--bounding-set=-dac_override,-dac_read_search", ORVANEIP_DEVCFG};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return test::run("setpriv", words, "", {"ORVANE_VAULT=" + vault.database()});
}

void check_all_refuse(const CommandVault& vault, const std::string& reason) {
  for (const test::Arguments& arguments : kCommands) {
    const test::Outcome outcome = devcfg_with_permissions(vault, arguments);
    EXPECT_EQ(outcome.exit_status, 1) << arguments.front();
    EXPECT_EQ(outcome.output, "") << arguments.front();
    EXPECT_EQ(outcome.errors.find("devcfg: the vault cannot be opened: " + reason), 0U)
        << arguments.front() << ": " << outcome.errors;
  }
}

}  // namespace

TEST(BadVault, AFolder) {
  const CommandVault vault;
  std::filesystem::create_directory(vault.database());
  check_all_refuse(vault, "the vault database cannot be opened");
}

TEST(BadVault, GarbageIsNeverOverwritten) {
  const CommandVault vault;
  std::string garbage = "This is no database.\n";
  for (int i = 0; i < 4096; ++i) {
    garbage += static_cast<char>(i * 31);
  }
  test::write_file(vault.database(), garbage);
  check_all_refuse(vault, "the file is damaged or not a vault database (result 9)");
  EXPECT_EQ(test::read_file(vault.database()), garbage);
}

TEST(BadVault, AnUnreadableFile) {
  const CommandVault vault;
  ASSERT_EQ(vault.devcfg({"import", test::shop_path("shop.json")}).exit_status, 0);
  const std::string before = vault.content();
  ASSERT_EQ(chmod(vault.database().c_str(), 0), 0);
  check_all_refuse(vault, "the vault database cannot be opened");
  ASSERT_EQ(chmod(vault.database().c_str(), 0600), 0);
  EXPECT_EQ(vault.content(), before);
}

TEST(BadVault, AReadOnlyFileIsListedButNotChanged) {
  const CommandVault vault;
  ASSERT_EQ(vault.devcfg({"import", test::shop_path("shop.json")}).exit_status, 0);
  const std::string before = vault.content();
  ASSERT_EQ(chmod(vault.database().c_str(), 0400), 0);
  EXPECT_EQ(devcfg_with_permissions(vault, {"export"}).output, before);
  for (const test::Arguments& arguments : kCommands) {
    const bool changes = arguments.front() != "list" && arguments.front() != "show" &&
                         arguments.front() != "channels" && arguments.front() != "export" &&
                         arguments[1] != "show" && arguments.back() != "--dry-run";
    const test::Outcome outcome = devcfg_with_permissions(vault, arguments);
    EXPECT_EQ(outcome.exit_status, changes ? 1 : 0) << arguments.front() << outcome.errors;
    EXPECT_EQ(outcome.errors.empty(), !changes) << arguments.front();
  }
  ASSERT_EQ(chmod(vault.database().c_str(), 0600), 0);
  EXPECT_EQ(vault.content(), before);
}
