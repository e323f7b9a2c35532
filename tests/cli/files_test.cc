// The files that the command reads and writes.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/cli/command.h"

namespace {

using test::CommandVault;
namespace fs = std::filesystem;

std::size_t files_in(const std::string& folder) {
  return static_cast<std::size_t>(
      std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

}  // namespace

TEST(CommandFiles, JsonThatCannotBeRead) {
  const CommandVault vault;
  struct Row {
    std::string text;
    std::string reason;
  };
  const Row kRows[] = {
      {"", "line 1, column 1"},
      {"[", "line 1, column 2"},
      {"[\n  {\"guid\": }\n]", "line 2, column 12"},
      {"[]\n x", "line 2, column 2"},
      {"[1,]", "line 1, column 4"},
      {"['a']", "line 1, column 2"},
      {"[] // text", "line 1, column 4"},
      {std::string("[\n\0]", 4), "line 2, column 1: a NUL byte"},
      {std::string(40, '['), "nesting too deep"},
      {"[" + std::string(std::size_t{16} << 20, ' ') + "]", "it is larger than 16 MiB"},
  };
  test::write_file(vault.file("input.json"), "");
  for (const Row& row : kRows) {
    test::write_file(vault.file("input.json"), row.text);
    for (const char* name : {"-", "input.json"}) {
      const std::string file = *name == '-' ? name : vault.file(name);
      const test::Outcome outcome = vault.devcfg({"import", file}, row.text);
      EXPECT_EQ(outcome.exit_status, 1) << row.text.substr(0, 40);
      const std::string shown = *name == '-' ? "standard input" : file;
      EXPECT_EQ(outcome.errors.find("devcfg: cannot read " + shown + ": "), 0U) << outcome.errors;
      EXPECT_NE(outcome.errors.find(row.reason), std::string::npos) << outcome.errors;
    }
  }
  test::check_steps(vault, {{{"import", vault.file("")}, "", 1, "", "Is a directory"},
                            {{"import", vault.file("none")}, "", 1, "", "No such file"}});
}

TEST(CommandFiles, ExportReplacesAFileInOneStep) {
  const CommandVault vault;
  ASSERT_EQ(vault.devcfg({"import", test::shop_path("shop.json")}).exit_status, 0);
  const test::TempFolder folder;
  const std::string file = folder.file("backup.json");
  const std::string link = folder.file("link.json");
  test::write_file(file, "old");
  fs::create_symlink(file, link);
  const int old_file = open(file.c_str(), O_RDONLY | O_CLOEXEC);
  for (const std::string& name : {file, link, folder.file("new.json")}) {
    test::check_steps(vault, {{{"export", name}, "", 0, "", ""}});
    EXPECT_EQ(test::read_file(name), vault.content());
    struct stat status {};
    EXPECT_EQ(stat(name.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
  }
  EXPECT_TRUE(fs::is_symlink(link));
  char text[4] = {};
  EXPECT_EQ(read(old_file, text, sizeof(text)), 3);  // who has it open keeps the old content
  close(old_file);

  test::check_steps(vault, {{{"export", folder.path()}, "", 1, "", "not a regular file"},
                            {{"export", "/dev/full"}, "", 1, "", "not a regular file"},
                            {{"export", folder.file("no/x")}, "", 1, "", "No such file"}});
  EXPECT_EQ(files_in(folder.path()), 3U);
}

TEST(CommandFiles, AFailedWriteIsToldAndLeavesTheOldFile) {
  const CommandVault vault;
  // More than the limit below, which the log of the vault itself needs.
  const std::string large =
      test::replaced(test::shop_file("shop.json"), "Till 1", std::string(100'000, 'n'));
  ASSERT_EQ(vault.devcfg({"import", "-"}, large).exit_status, 0);
  const test::TempFolder folder;
  test::write_file(folder.file("backup.json"), "old");
  const auto shell = [&vault](const std::string& script) {
    return test::run("bash", {"-c", script, ORVANEIP_DEVCFG}, "",
                     {"ORVANE_VAULT=" + vault.database()});
  };
  const auto full =
      shell("trap '' XFSZ; ulimit -f 64; exec \"$0\" export " + folder.file("backup.json"));
  EXPECT_EQ(full.exit_status, 1) << full.errors;
  EXPECT_NE(full.errors.find("backup.json: File too large"), std::string::npos) << full.errors;
  EXPECT_EQ(test::read_file(folder.file("backup.json")), "old");
  EXPECT_EQ(files_in(folder.path()), 1U);

  for (const char* command : {"list", "list --json", "export", "--help", "--version"}) {
    for (const char* output : {">/dev/full", ">&-"}) {
      const auto outcome = shell(std::string("exec \"$0\" ") + command + " " + output);
      EXPECT_EQ(outcome.exit_status, 1) << command << output;
      EXPECT_EQ(outcome.errors.find("devcfg: cannot write to standard output: "), 0U)
          << command << output << outcome.errors;
    }
  }
}
