// Vaults that cannot be used, and changes that fail: the command says so, and nothing is lost.
#include <sys/stat.h>
#include <unistd.h>

#include "tests/cli/command.h"
#include "tests/platform/run_sql.h"

namespace {

using test::CommandVault;

const std::vector<std::string> kReads = {
    "list",   "show till-1 --json",  "channels till-1",
    "export", "filters show till-1", "import shop.json --replace --dry-run"};
const std::vector<std::string> kChanges = {
    "add --type t --name n", "modify till-1 --disable", "filters set till-1 filters-till-2.json",
    "remove till-1",         "camera removed cam-yard", "camera renamed cam-yard x",
    "import shop.json"};

void check(const CommandVault& vault, const std::vector<std::string>& commands, int exit_status,
           const std::string& errors) {
  // For the superuser the permissions of files count only without these capabilities.
  const std::string drop = "setpriv --bounding-set=-dac_override,-dac_read_search ";
  for (const std::string& words : commands) {
    const test::Outcome outcome =
        vault.devcfg(words, "", (geteuid() == 0 ? drop : "") + "\"$devcfg\"");
    EXPECT_EQ(outcome.exit_status, exit_status) << words;
    EXPECT_EQ(outcome.output.empty(), exit_status != 0) << words;
    EXPECT_TRUE(outcome.errors.starts_with(errors)) << words << ": " << outcome.errors;
    EXPECT_EQ(outcome.errors.empty(), errors.empty()) << words << ": " << outcome.errors;
  }
}

}  // namespace

TEST(BadVault, WhatCannotBeReadOrWrittenIsToldAndNotChanged) {
  const std::string reason = "devcfg: the vault cannot be opened: ";
  const CommandVault vault;
  vault.import_shop();
  const std::string before = vault.content();
  ASSERT_EQ(chmod(vault.database().c_str(), 0), 0);
  check(vault, kReads, 1, reason + "the vault database cannot be opened");
  ASSERT_EQ(chmod(vault.database().c_str(), 0400), 0);
  check(vault, kReads, 0, "");
  check(vault, kChanges, 1, "devcfg: ");
  ASSERT_EQ(chmod(vault.database().c_str(), 0600), 0);
  EXPECT_EQ(vault.content(), before);
  const std::string garbage = "This is no database.\n" + std::string(4096, '\xE5');
  test::write_file(vault.database(), garbage);
  for (const auto& commands : {kReads, kChanges}) {
    check(vault, commands, 1, reason + "the file is damaged or not a vault database (result 9)");
  }
  EXPECT_EQ(test::read_file(vault.database()), garbage);
}

// A trigger lets one kind of write fail.
TEST(BadVault, AChangeThatDidNotArriveIsToldAndAFailedImportTakenBack) {
  const CommandVault vault;
  vault.import_shop();
  const std::string before = vault.content();
  std::string document = before;
  for (const std::string id : {"till-1\"", "door-staff\"", "plates-yard\"", "till-2\""}) {
    document = test::replaced(document, '"' + id, "\"new-" + id);
  }
  test::write_file(vault.file("new.json"), document);
  const std::string import = "import --replace " + vault.file("new.json");
  const std::string kRows[][3] = {
      {"INSERT ON data_source", "add new --type t --name n", "the data source was not added"},
      {"INSERT ON channel", "add new --type t --name n --channel 0:a:b", "added"},
      {"UPDATE ON data_source", "modify till-1 --description New",
       "the change of \"till-1\" did not arrive in the vault; --log tells why"},
      {"INSERT ON channel", "modify till-1 --channel 0:a:b", "the change of \"till-1\" did not"},
      {"DELETE ON data_source", "remove till-1 till-2", "did not arrive"},
      {"INSERT ON filter", "filters set till-1 filters-door-staff.json",
       "filter list of \"till-1\" did not arrive"},
      {"DELETE ON channel", "camera removed cam-yard",
       "the removal of camera \"cam-yard\" did not arrive"},
      {"UPDATE ON channel", "camera renamed cam-yard New", "the new name of camera"},
      {"DELETE ON data_source WHEN OLD.list_index = 2", import, "until then: "},
      {"INSERT ON data_source WHEN NEW.vault_id = 'new-door-staff'", import, "until then: "},
      {"INSERT ON channel WHEN NEW.vault_id = 'new-till-2'", import, "until then: "},
      {"INSERT ON filter WHEN NEW.vault_id = 'new-till-2'", import, "until then: "},
      {"UPDATE ON data_source WHEN NEW.vault_id LIKE 'new-%'", import, "until then: "},
  };
  for (const auto& [event, words, reason] : kRows) {
    const CommandVault failing;
    failing.check({{"import -", 0, "4 added", before}});
    test::run_sql(failing.database(), "CREATE TRIGGER failing BEFORE " + event +
                                          " BEGIN SELECT RAISE(ABORT, 'failing'); END");
    failing.check({{words, 1, reason}});
    EXPECT_TRUE(words != import || failing.content() == before) << event;
  }
}
