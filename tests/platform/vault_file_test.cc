#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/platform/run_sql.h"
#include "tests/support/captured_log.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"
#include "tests/support/vault_calls.h"

namespace {

using namespace metadata_vault;

constexpr std::filesystem::perms kPrivate{0600};

}  // namespace

TEST(VaultFile, WhatIsNoVaultOfThisVersionIsRefusedAndLeftAlone) {
  const std::string kForeign =
      "CREATE TABLE channel (guid); INSERT INTO channel VALUES ('g'); PRAGMA user_version = ";
  // The bytes of the file, or the statements that make a database or change a vault.
  const std::pair<std::string, int> kRows[] = {
      {"hello", kVaultDamaged},
      {std::string(4096, '\0'), kVaultDamaged},
      {kForeign + "0", kVaultDamaged},
      {kForeign + "1", kVaultDamaged},
      {"PRAGMA user_version = -1", kVaultDamaged},
      {"PRAGMA user_version = 0x4F525602", kVaultNewerSchema},
  };
  for (const auto& [content, status] : kRows) {
    const test::TempVault folder;
    if (content.starts_with("PRAGMA")) {
      EXPECT_EQ(test::add("a", "a", R"([{"guid":"g","channel_index":1,"name":"n"}])"), 0);
    }
    content.find("PRAGMA") != std::string::npos ? void(test::run_sql(folder.database(), content))
                                                : test::write_file(folder.database(), content);
    const std::string before = test::read_file(folder.database());
    test::take_log();
    EXPECT_EQ(test::add("b"), status) << content;
    EXPECT_EQ(test::take_log().at(1).find("[vaultdb] init failed with status " +
                                          std::to_string(status) + ": " + folder.database()),
              0U);
    char guid[] = "g";
    EXPECT_EQ(notify_camera_removed(guid), 0);
    EXPECT_EQ(test::show(), R"({"vault_list":[]})");
    EXPECT_TRUE(test::read_file(folder.database()) == before) << content;
  }
}

TEST(VaultFile, IsPrivateAndStandsWhereThePathSays) {
  const test::TempVault folder;
  ASSERT_EQ(chdir(folder.path().c_str()), 0);
  std::filesystem::create_symlink("target", folder.file("link"));
  for (const char* path :
       {"new/folders/vault.db", "with space=1; 'x' %s", "quoted\"name", "db=x y ",
        ":memory:", "file:a?mode=memory", "./empty", "link", "攝影機"}) {
    setenv("ORVANE_VAULT", path, 1);
    if (path == std::string("./empty")) {
      test::write_file(path, "");
      chmod(path, 0600);
    }
    test::OpenVault open;
    EXPECT_EQ(open->insert_data_source(test::data_source("a", 0)), 0) << path;
    EXPECT_EQ(test::stored().size(), 1U);
    const std::string file = path == std::string("link") ? "target" : path;
    EXPECT_EQ(std::filesystem::status(file).permissions(), kPrivate) << path;
  }
}

TEST(VaultFile, ThatCannotBeOpenedIsToldInWords) {
  const test::TempVault folder;
  const std::tuple<std::string, int, const char*> kRows[] = {
      {folder.file("both=and\"quote"), kVaultUnreachable, "quotation mark"},
      {"postgresql://localhost/vault", kVaultUnsupported, "PostgreSQL is not built in"},
      {"/dev/null/vault.db", kVaultUnreachable, "Not a directory"},
  };
  for (const auto& [setting, status, words] : kRows) {
    setenv("ORVANE_VAULT", setting.c_str(), 1);
    test::take_log();
    EXPECT_EQ(test::add("a"), status);
    EXPECT_NE(test::take_log().at(1).find(words), std::string::npos) << words;
  }
}

TEST(VaultFile, OnAFullDiskKeepsWhatItHolds) {
  const test::TempVault folder;
  EXPECT_EQ(test::add("a"), 0);
  const pid_t child = test::start([] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {65536, 65536};
    setrlimit(RLIMIT_FSIZE, &limit);
    test::take_log();
    const int status = test::add("b", std::string(1'000'000, 'n'));
    const std::string told = "[vaultdb] insert_data_source failed with status 8: ";
    const auto log = test::take_log();
    const bool is_told = std::any_of(
        log.begin(), log.end(), [&](const std::string& line) { return line.starts_with(told); });
    return is_told && test::stored().size() == 1 ? status : 100;
  });
  EXPECT_EQ(test::wait_for(child), kVaultNoSpace);
  EXPECT_EQ(test::add("c"), 0);
  EXPECT_EQ(test::stored().size(), 2U);
}

#ifdef ORVANEIP_ROOT
TEST(VaultFile, StandsBelowTheRootByDefault) {
  const std::string file = ORVANEIP_ROOT "/var/lib/orvane/vault.db";
  std::filesystem::remove_all(ORVANEIP_ROOT "/var/lib/orvane");
  setenv("ORVANE_VAULT", "", 1);
  EXPECT_EQ(test::add("a"), 0);
  unsetenv("ORVANE_VAULT");
  EXPECT_EQ(test::add("b"), 0);
  EXPECT_EQ(std::filesystem::status(file).permissions(), kPrivate);
  EXPECT_EQ(test::stored().size(), 2U);
}
#endif
