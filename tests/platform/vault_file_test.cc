#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/captured_log.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"
#include "tests/support/vault_calls.h"

namespace {

using namespace metadata_vault;

void run_sql(const std::string& file, const std::string& statements) {
  sqlite3* handle = nullptr;
  EXPECT_EQ(sqlite3_open(file.c_str(), &handle), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(handle, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(handle);
}

// The exit status of `work` in a child that may not do more than files' modes allow.
int without_privileges(const std::function<int()>& work) {
  return test::wait_for(test::start([&] {
    if (geteuid() == 0 && setuid(65534) != 0) {
      return 125;
    }
    return work();
  }));
}

unsigned mode_of(const std::string& file) {
  struct stat status {};
  return stat(file.c_str(), &status) == 0 ? status.st_mode & 0777U : 0;
}

}  // namespace

TEST(VaultFile, WhatIsNoVaultOfThisVersionIsRefusedAndLeftAlone) {
  struct Row {
    int status;
    std::string bytes;       // of the file
    std::string statements;  // when it has none: the database to make, or to make of a vault
  };
  const std::string kForeign =
      "CREATE TABLE channel (guid); INSERT INTO channel VALUES ('g'); PRAGMA user_version = ";
  const Row kRows[] = {
      {kVaultDamaged, std::string(5000, 'x'), ""},
      {kVaultDamaged, "hello", ""},
      {kVaultDamaged, std::string(4096, '\0'), ""},
      {kVaultDamaged, "", kForeign + "0"},
      {kVaultDamaged, "", kForeign + "1"},
      {kVaultDamaged, "", kForeign + "7"},
      {kVaultDamaged, "", "PRAGMA user_version = -1"},
      {kVaultNewerSchema, "", "PRAGMA user_version = 2"},
  };
  for (const Row& row : kRows) {
    const test::TempVault folder;
    if (row.statements.starts_with("PRAGMA")) {
      EXPECT_EQ(test::add("a", "a", R"([{"guid":"g","channel_index":1,"name":"n"}])"), 0);
    }
    row.bytes.empty() ? run_sql(folder.database(), row.statements)
                      : test::write_file(folder.database(), row.bytes);
    const std::string before = test::read_file(folder.database());
    test::take_log();
    EXPECT_EQ(test::add("b"), row.status) << row.statements;
    EXPECT_EQ(test::take_log().at(1).find("[vaultdb] init failed with status " +
                                          std::to_string(row.status) + ": " + folder.database()),
              0U);
    char guid[] = "g";
    EXPECT_EQ(notify_camera_removed(guid), 0);
    EXPECT_EQ(test::show(), R"({"vault_list":[]})");
    EXPECT_TRUE(test::read_file(folder.database()) == before) << row.statements;
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
    for (const char* suffix : {"", "-wal", "-shm"}) {
      EXPECT_EQ(mode_of(file + suffix), 0600U) << path << suffix;
    }
  }
}

TEST(VaultFile, ThatCannotBeOpenedIsToldInWords) {
  const test::TempVault folder;
  struct Row {
    std::string setting;
    int status;
    const char* words;
  };
  const Row kRows[] = {
      {folder.path(), kVaultUnreachable, "unable to open"},
      {folder.file("both=and\"quote"), kVaultUnreachable, "quotation mark"},
      {"postgresql://localhost/vault", kVaultUnsupported, "PostgreSQL is not built in"},
      {"/dev/null/vault.db", kVaultUnreachable, "Not a directory"},
  };
  for (const Row& row : kRows) {
    setenv("ORVANE_VAULT", row.setting.c_str(), 1);
    test::take_log();
    EXPECT_EQ(test::add("a"), row.status);
    EXPECT_NE(test::take_log().at(1).find(row.words), std::string::npos) << row.words;
  }
}

TEST(VaultFile, AndFolderModesAreRespected) {
  const test::TempVault folder;
  chmod(folder.path().c_str(), 0777);
  EXPECT_EQ(without_privileges([] { return test::add("a"); }), 0);
  const std::string before = test::read_file(folder.database());
  for (const char* suffix : {"", "-wal", "-shm"}) {
    chmod((folder.database() + suffix).c_str(), 0444);
  }
  chmod(folder.path().c_str(), 0555);
  EXPECT_EQ(without_privileges([] { return test::add("b"); }), kVaultReadOnly);
  EXPECT_EQ(without_privileges([] { return static_cast<int>(test::stored().size()); }), 1);
  EXPECT_EQ(without_privileges([&] {
              setenv("ORVANE_VAULT", folder.file("new").c_str(), 1);
              return test::add("a");
            }),
            kVaultUnreachable);
  chmod(folder.database().c_str(), 0);
  EXPECT_EQ(without_privileges([] { return test::add("b"); }), kVaultUnreachable);
  EXPECT_TRUE(test::read_file(folder.database()) == before);
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
    const auto log = test::take_log();
    const bool told = std::any_of(log.begin(), log.end(), [](const std::string& line) {
      return line.find("[vaultdb] insert_data_source failed with status 8: ") == 0;
    });
    return told && test::stored().size() == 1 ? status : 100;
  });
  EXPECT_EQ(test::wait_for(child), kVaultNoSpace);
  EXPECT_EQ(test::add("c"), 0);
  EXPECT_EQ(test::stored().size(), 2U);
}

#ifdef ORVANEIP_ROOT
TEST(VaultFile, StandsBelowTheRootByDefault) {
  const std::string file = ORVANEIP_ROOT "/var/lib/orvane/vault.db";
  std::filesystem::remove_all(ORVANEIP_ROOT "/var/lib/orvane");
  for (const char* setting : {"", static_cast<const char*>(nullptr)}) {
    setting != nullptr ? setenv("ORVANE_VAULT", setting, 1) : unsetenv("ORVANE_VAULT");
    EXPECT_EQ(test::add(setting != nullptr ? "a" : "b"), 0);
  }
  EXPECT_EQ(mode_of(file), 0600U);
  EXPECT_EQ(test::stored().size(), 2U);
}
#endif
