// The files that the command reads and writes, and the demonstration.

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/cli/command.h"

namespace {

using test::CommandVault;
namespace fs = std::filesystem;

auto files_in(const std::string& folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

}  // namespace

TEST(CommandFiles, JsonThatCannotBeRead) {
  const CommandVault vault;
  const std::string begin = "devcfg: cannot read standard input: ";
  vault.check({
      {"import -", 1, begin + "line 1, column 2", "["},
      {"import -", 1, begin + "line 2, column 12", "[\n  {\"guid\": }\n]"},
      {"import -", 1, begin + "line 1, column 4", "[1,]"},
      {"import -", 1, begin + "line 1, column 4", "[] // text"},
      {"import -", 1, begin + "line 2, column 1: a NUL byte", std::string("[\n\0]", 4)},
      {"import -", 1, "nesting too deep", std::string(40, '[')},
      {"import -", 1, begin + "it is larger than 16 MiB", std::string((16U << 20) + 2, ' ')},
  });
  test::write_file(vault.file("x.json"), "[");
  vault.check({{"import " + vault.file("x.json"), 1, "/x.json: line 1, column 2"},
               {"import " + vault.path(), 1, "Is a directory"},
               {"import " + vault.file("none"), 1, "No such file"}});
}

TEST(CommandFiles, ADeviceTreeWithNodesOfAnyName) {
  const CommandVault vault;
  const std::string file = vault.file("tree.xml");
  test::write_file(file,
                   "<device><device_node_list>tills_012,camera,NULL,,007</device_node_list>"
                   "<tills_012><device_id>T</device_id></tills_012></device>");
  vault.check({{"tree nodes --file '" + file + "'", 0, "tills_012 12     T "},
               {"tree nodes --file '" + file + "'", 0, "\ncamera "},
               {"tree find T --file '" + file + "'", 0, "tills_012\n"},
               {"tree show tills_012 --file '" + file + "'", 0, "id           T\n"}});
}

TEST(CommandFiles, ExportReplacesAFileInOneStep) {
  const CommandVault vault;
  vault.import_shop();
  const test::TempFolder folder;
  const std::string file = folder.file("backup.json");
  const std::string link = folder.file("link.json");
  test::write_file(file, "old");
  fs::create_symlink(file, link);
  std::ifstream old_file(file);
  for (const std::string& name : {file, link, folder.file("new.json")}) {
    vault.check({{"export " + name, 0, ""}});
    EXPECT_EQ(test::read_file(name), vault.content());
    EXPECT_EQ(fs::status(name).permissions(), fs::perms{0600});
  }
  EXPECT_TRUE(fs::is_symlink(link));
  std::string text;
  EXPECT_TRUE(old_file >> text && text == "old");  // who has it open keeps the old content
  vault.check({{"export " + folder.path(), 1, "not a regular file"},
               {"export /dev/full", 1, "not a regular file"},
               {"export " + folder.file("no/x"), 1, "No such file"}});
  EXPECT_EQ(files_in(folder.path()), 3);
}

TEST(CommandFiles, AFailedWriteIsToldAndLeavesTheOldFile) {
  const CommandVault vault;
  vault.import_shop();
  // More than the limit below, which the log of the vault itself needs.
  const std::string large = test::replaced(vault.content(), "Till 1", std::string(100'000, 'n'));
  const std::string file = vault.file("folder/backup.json");
  fs::create_directory(vault.file("folder"));
  test::write_file(file, "old");
  vault.check({{"import - --replace", 0, "4 added", large}});
  const test::Outcome full =
      vault.devcfg("export " + file, "", "trap '' XFSZ; ulimit -f 64; \"$devcfg\"");
  EXPECT_EQ(full.exit_status, 1);
  test::expect_part(full.errors, "backup.json: File too large");
  EXPECT_EQ(test::read_file(file), "old");
  EXPECT_EQ(files_in(vault.file("folder")), 1);
  for (const std::string command : {"list", "list --json", "export", "--help", "--version"}) {
    vault.check({{command + " >/dev/full", 1, "cannot write to standard output: "},
                 {command + " >&-", 1, "cannot write to standard output: "}});
  }
}

TEST(Demo, EveryStepDoesWhatItSays) {
  const std::string folder = fs::path(ORVANEIP_DEVCFG).parent_path();
  const test::TempFolder temporary;
  const test::Outcome outcome =
      test::run("bash", {ORVANEIP_SOURCE_DIR "/examples/demo.sh"}, "",
                {"PATH=" + folder + ":" + std::getenv("PATH"), "TMPDIR=" + temporary.path()});
  EXPECT_EQ(outcome.exit_status, 0) << outcome.output << outcome.errors;
  EXPECT_NE(outcome.output.find("$ devcfg import backup.json --dry-run\n"), std::string::npos);
  EXPECT_TRUE(fs::is_empty(temporary.path()));
}
