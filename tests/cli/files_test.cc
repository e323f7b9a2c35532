// The files that the command reads and writes, vaults that fail, and the demo.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/cli/command.h"
#include "tests/support/bare_sqlite.h"

using test::CommandVault;
namespace fs = std::filesystem;

TEST(CommandFiles, JsonThatCannotBeRead) {
  const CommandVault vault;
  const std::string begin = "devcfg: cannot read standard input: ";
  test::write_file(vault.file("x.json"), "[");
  vault.check({
      {"import -", 1, begin + "line 2, column 12", "[\n  {\"guid\": }\n]"},
      {"import -", 1, begin + "line 1, column 4", "[] // text"},
      {"import -", 1, begin + "line 2, column 1: a NUL byte", std::string("[\n\0]", 4)},
      {"import -", 1, "nesting too deep", std::string(40, '[')},
      {"import -", 1, begin + "it is larger than 16 MiB", std::string((16U << 20) + 2, ' ')},
      {"import " + vault.file("x.json"), 1, "/x.json: line 1, column 2"},
      {"import " + vault.path(), 1, "Is a directory"},
  });
}

TEST(CommandFiles, ExportReplacesAFileInOneStepOrKeepsIt) {
  const CommandVault vault;
  vault.import_shop();
  const test::TempDirectory directory;
  const std::string file = directory.file("backup.json"), link = directory.file("link.json");
  test::write_file(file, "old");
  fs::create_symlink(file, link);
  std::ifstream old_file(file);
  for (const std::string& name : {file, link, directory.file("new.json")}) {
    vault.check({{"export " + name, 0, ""}});
    EXPECT_EQ(test::read_file(name), vault.content());
    EXPECT_EQ(fs::status(name).permissions(), fs::perms{0600});
  }
  std::string text;
  EXPECT_TRUE(old_file >> text && text == "old");  // an open file keeps the old content
  // More than the limit below, which leaves room for the log of the vault.
  const std::string large = test::replaced(vault.content(), "Till 1", std::string(100'000, 'n'));
  vault.check({{"export " + directory.path(), 1, "not a regular file"},
               {"export " + directory.file("no/x"), 1, "No such file"},
               {"import - --replace", 0, "4 added", large}});
  const std::string before = test::read_file(file);
  const test::Outcome full = vault.devcfg("export " + link, "", "trap '' XFSZ; ulimit -f 64; ");
  EXPECT_EQ(full.exit_status, 1);
  test::expect_part(full.errors, "json: File too large");
  EXPECT_EQ(test::read_file(file), before);
  EXPECT_EQ(std::distance(fs::directory_iterator(directory.path()), {}), 3);
  EXPECT_TRUE(fs::is_symlink(link));
  for (const std::string command : {"list", "list --json", "export", "--help", "--version"}) {
    vault.check({{command + " >/dev/full", 1, "cannot write to standard output: "},
                 {command + " >&-", 1, "cannot write to standard output: "}});
  }
}

TEST(BadVault, IsReportedAndNotChanged) {
  const std::string reason = "devcfg: the vault cannot be opened: ";
  const CommandVault vault;
  vault.import_shop();
  const std::string before = vault.content();
  const std::string garbage = "This is no database.\n" + std::string(4096, '\xE5');
  const std::vector<std::string> reads = {"list", "show till-1 --json", "export",
                                          "import shop.json --replace --dry-run"};
  const std::vector<std::string> changes = {"add --type t --name n", "modify till-1 --disable",
                                            "remove till-1", "camera removed cam-yard"};
  const auto check = [&](const std::vector<std::string>& commands, int status,
                         const std::string& text) {
    for (const std::string& words : commands) {
      vault.check({{words, status, text}});
    }
  };
  chmod(vault.database().c_str(), 0);
  check(reads, 1, reason + "the vault database cannot be opened");
  chmod(vault.database().c_str(), 0400);
  check(reads, 0, "till-1");
  check(changes, 1, "devcfg: ");
  chmod(vault.database().c_str(), 0600);
  EXPECT_EQ(vault.content(), before);
  test::write_file(vault.database(), garbage);
  check(reads, 1, reason + "the file is damaged or not a vault database (result 9)");
  check(changes, 1, reason + "the file is damaged or not a vault database (result 9)");
  EXPECT_EQ(test::read_file(vault.database()), garbage);
}

TEST(BadVault, ReportsAChangeThatWasNotStoredAndRollsBackAFailedImport) {
  const CommandVault vault;
  vault.import_shop();
  const std::string before = vault.content();
  std::string document = before;
  for (const std::string id : {"till-1\"", "door-staff\"", "plates-yard\"", "till-2\""}) {
    document = test::replaced(document, '"' + id, "\"new-" + id);
  }
  const std::string import = "import --replace -";
  const std::string kRows[][3] = {
      {"INSERT INTO data_source", "add new --type t --name n", "the data source was not added"},
      {"INSERT INTO channel", "add new --type t --name n --channel 0:a:b", "added"},
      {"UPDATE data_source", "modify till-1 --description New",
       "the change of \"till-1\" was not stored in the vault (--log shows why)"},
      {"DELETE FROM data_source", "remove till-1 till-2", "was not stored"},
      {"INSERT INTO filter", "filters set till-1 filters-door-staff.json", "was not stored"},
      {"DELETE FROM channel", "camera removed cam-yard", "was not stored"},
      {"UPDATE channel", "camera renamed cam-yard New", "the new name of camera"},
      {"DELETE FROM data_source WHERE vault_id = 'plates-yard'", import, "until then: "},
      {"last_recv_time) VALUES ('new-door-staff'", import, "until then: "},
      {"result, name) VALUES ('new-till-2'", import, "until then: "},
  };
  for (const auto& [statement, words, reason] : kRows) {
    CommandVault failing;
    failing.check({{"import -", 0, "4 added", before}});
    failing.failing_statement = statement;
    failing.check({{words, 1, reason, document}});
    failing.failing_statement = "";
    EXPECT_TRUE(words != import || failing.content() == before) << statement;
  }
}

TEST(Demo, EveryStepDoesWhatItSays) {
  const std::string directory = fs::path(ORVANEIP_DEVCFG).parent_path();
  const test::TempDirectory temporary;
  const test::Outcome outcome =
      test::run("bash", {ORVANEIP_SOURCE_DIR "/examples/demo.sh"}, "",
                {"PATH=" + directory + ":" + std::getenv("PATH"), "TMPDIR=" + temporary.path()});
  EXPECT_EQ(outcome.exit_status, 0) << outcome.output << outcome.errors;
  EXPECT_NE(outcome.output.find("$ devcfg import backup.json --dry-run\n"), std::string::npos);
  EXPECT_TRUE(fs::is_empty(temporary.path()));
}
